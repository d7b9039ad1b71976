// Opening, saving and closing a drawing in the editor, as the application's automation does it.
#include "drawing/DrawingReads.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/access/QxHostCalls.h"
#include "platform/host/HostOutput.h"
#include "platform/host/HostVariables.h"
#include "support/FileSystem.h"
#include "support/NumberText.h"
#include "support/PathText.h"

namespace {

// The version name that the saveas command takes for the host's default save format.
CString versionOfDefaultFormat() {
    char16_t setting[64] = {};
    const int format = acedGetEnv(u"DefaultFormatForSave", setting, 64) == RTNORM ? QxToInt(setting) : 0;
    switch (format) {
    case 24: return u"2004";
    case 12: return u"2000";
    case 8: return u"R14";
    default: return u"2007";
    }
}

void saveInDefaultFormat(AcApDocument& document, const CString& path) {
    document.SendCommand(u"setvar FILEDIA 0 ");
    document.SendCommand(u"setvar CMDECHO 0 ");
    document.SendCommand(QxFormat(u"saveas\n%s\n%s\ny\n", versionOfDefaultFormat(), path));
    document.SendCommand(u"setvar CMDECHO 1 ");
    document.SendCommand(u"setvar FILEDIA 1 ");
}

// Reads the drawing to prove that it opens. A database read for the proof, rather than a document's, is
// handed on, so that opening the drawing in the editor (`open`) does not read the file a second time.
bool proveDrawingOpens(const CString& path, bool open, std::unique_ptr<AcDbDatabase>& read) {
    CDrawingReadScope* reads = CDrawingReadScope::active();
    if (reads != nullptr && !QxIsDwgOpen(path)) {
        if (reads->database(path) == nullptr) return false;
        if (open) read = reads->take(path);
        return true;
    }
    AcDbDatabase* database = nullptr;
    if (QxOpenDwgDatabase(path, 1, database)) read.reset(database);
    return database != nullptr;
}

} // namespace

void QxOpenDwgInEditor(CString path, bool open, bool save, bool close) {
    std::unique_ptr<AcDbDatabase> read;
    if (!proveDrawingOpens(path, open, read)) return;
    AcApDocument* document = nullptr;
    if (open) {
        document = acDocManagerPtr()->openDocument(path, false, std::move(read));
        if (document == nullptr) {
            AfxMessageBox(u"文件" + QxFs::ToNativeText(path) + u"打开失败!");
            return;
        }
    } else {
        QxActivateDwg(path);
        document = acDocManagerPtr()->mdiActiveDocument();
    }
    if (document == nullptr) return;

    int saveBackup = 1;
    QxGetVarInt(u"ISAVEBAK", saveBackup);
    if (saveBackup == 0) QxSetVarInt(u"ISAVEBAK", 1);
    if (save) saveInDefaultFormat(*document, path);
    if (saveBackup == 0) {
        QxSetVarInt(u"ISAVEBAK", 0);
        const CString backup = RemoveFileExtension(path) + u".bak";
        if (QxFs::Exists(backup)) QxFs::DeleteFile(backup);
    }
    if (close) acDocManagerPtr()->closeDocument(document);
}
