// Opening drawings and finding them among the documents.
#include "drawing/access/QxDwgOpen.h"

#include "drawing/DrawingReads.h"
#include "drawing/access/QxHostCalls.h"

namespace {

CString nameBehindLastBackslash(const CString& path) {
    return path.Mid(path.ReverseFind(u'\\') + 1);
}

bool matches(const AcApDocument* document, const CString& path, int mode) {
    if (mode == 1) return document->fileName().EqualsNoCase(path);
    return nameBehindLastBackslash(document->fileName()).EqualsNoCase(nameBehindLastBackslash(path));
}

AcApDocument* findDocument(const CString& path, int mode) {
    for (auto it = acDocManagerPtr()->newAcApDocumentIterator(); !it->done(); it->step())
        if (matches(it->document(), path, mode)) return it->document();
    return nullptr;
}

int sdi() {
    int value = 0;
    QxGetVarInt(u"SDI", value);
    return value;
}

} // namespace

bool QxOpenDwgDatabase(CString path, int mode, AcDbDatabase*& database) {
    if (const AcApDocument* document = findDocument(path, mode)) {
        database = document->database();
        return false;
    }
    auto read = std::make_unique<AcDbDatabase>(false, true);
    if (read->readDwgFile(path, 64, false, nullptr) != Acad::eOk) {
        database = nullptr;
        return false;
    }
    database = read.release();
    return true;
}

bool QxIsDwgOpen(CString path) {
    return findDocument(path, 1) != nullptr;
}

bool QxFindOtherDocument(CString path, int mode, AcApDocument*& document) {
    if (sdi() != 0) return false;
    AcApDocument* found = findDocument(path, mode);
    if (found == nullptr || found == acDocManagerPtr()->curDocument()) return false;
    document = found;
    return true;
}

void QxActivateDwg(CString path) {
    if (sdi() == 1) return;
    if (AcApDocument* document = findDocument(path, 1)) {
        acDocManagerPtr()->activateDocument(document, false);
        acDocManagerPtr()->setCurDocument(document, AcAp::kNone, false);
    }
    acedPostCommandPrompt();
}

QxDwgDatabase::QxDwgDatabase(CString path, int mode) {
    // Within a command, a drawing read beside the editor is read once and kept by the command's scope.
    if (CDrawingReadScope* reads = CDrawingReadScope::active()) {
        const AcApDocument* document = findDocument(path, mode);
        m_database = document != nullptr ? document->database() : reads->database(path);
        return;
    }
    m_owned = QxOpenDwgDatabase(std::move(path), mode, m_database);
}

QxDwgDatabase::~QxDwgDatabase() {
    if (m_owned) delete m_database;
}
