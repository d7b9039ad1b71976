// Scanning the primary diagram of a project folder.
#include "drawing/assembly/PrimaryScan.h"

#include "drawing/ExtractionState.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/assembly/ReferGroups.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "drawing/primary/SysHead.h"
#include "drawing/title/TitleBlock.h"
#include "support/FileUtils.h"

namespace {

// Makes a drawing the working database, and its document current when another document holds it, for
// the length of a scope.
class WorkingDrawing {
public:
    WorkingDrawing(AcDbDatabase* database, const CString& path)
        : m_services(*acdbHostApplicationServices()), m_previousDatabase(m_services.workingDatabase()) {
        m_services.setWorkingDatabase(database);
        AcApDocument* other = nullptr;
        if (!QxFindOtherDocument(path, 1, other)) return;
        m_previousDocument = acDocManagerPtr()->curDocument();
        acDocManagerPtr()->setCurDocument(other, AcAp::kNone, false);
    }
    ~WorkingDrawing() {
        m_services.setWorkingDatabase(m_previousDatabase);
        if (m_previousDocument != nullptr) acDocManagerPtr()->setCurDocument(m_previousDocument, AcAp::kNone, false);
    }
    WorkingDrawing(const WorkingDrawing&) = delete;
    WorkingDrawing& operator=(const WorkingDrawing&) = delete;

private:
    AcDbHostApplicationServices& m_services;
    AcDbDatabase* m_previousDatabase;
    AcApDocument* m_previousDocument = nullptr;
};

void readPrimaryDiagram(AcDbDatabase* database, const CString& path) {
    bool found1 = false, foundBus = false, found2 = false;
    CString text1, textBus, text2;
    AcDbObjectId id1, id2, idBus;
    QxReadSysHead(database, found1, foundBus, found2, text1, textBus, text2, id1, id2, idBus);
    CString number, name;
    QxGetDwgTitle(database, number, name);
    QxGetPrimaryCircuits(path, 1, g_arrCircuits);
    QxBuildReferGroups(g_arrCircuits, g_arrReferGroups, path);
}

} // namespace

void QxScanPrimaryDiagram(CString folder) {
    CStringArray drawings;
    FindFilesInFolder(folder, u"dwg", drawings, false);
    if (drawings.GetSize() != 1) return;
    const CString path = drawings[0];
    if (!FileExists(path)) return;

    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);
    if (!QxIsDwgOpen(path)) QxOpenDwgInEditor(path, true, false, false);

    // Declared first so that it is deleted after the working database is restored.
    const QxDwgDatabase drawing(path, 1);
    if (!drawing) return;
    const WorkingDrawing working(drawing.get(), path);
    readPrimaryDiagram(drawing.get(), path);
}
