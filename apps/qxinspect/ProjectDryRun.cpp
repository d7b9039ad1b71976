// The dry run of a project's submit: the steps of HMBomSubmit or HMItmSubmit up to the cloud call.
#include "ProjectDryRun.h"

#include "drawing/ExtractionState.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/DeviceBomMerge.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "platform/host/HostOutput.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileUtils.h"
#include "support/PathText.h"

namespace {

// Keeps the texts of the boxes shown while it lives, and still shows them.
class RecordedBoxes final : public IHostOutput {
public:
    explicit RecordedBoxes(CStringArray& texts) : m_texts(texts), m_previous(HostOutput()) { SetHostOutput(this); }
    ~RecordedBoxes() override { SetHostOutput(&m_previous); }
    RecordedBoxes(const RecordedBoxes&) = delete;
    RecordedBoxes& operator=(const RecordedBoxes&) = delete;

    void Print(const CString& text) override { m_previous.Print(text); }
    void MessageBox(const CString& text, const CString& caption, unsigned style) override {
        m_texts.Add(text);
        m_previous.MessageBox(text, caption, style);
    }

private:
    CStringArray& m_texts;
    IHostOutput& m_previous;
};

// HMBomSubmit up to submitBom: the root from the document, the scan, the walk that extracts every device.
void readKnownProject(ProjectDryRun& run) {
    run.m_strCommand = u"HMBomSubmit";
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, run.m_strProjectFolder + u"Hexmoor.xml");
    HMXmlReadNode(document, run.m_pTree.get());
    QxScanPrimaryDiagram(run.m_strProjectFolder);
    LinkChildrenAndLoad(run.m_pTree.get(), run.m_strProjectFolder, true);
}

// HMItmSubmit up to submitItm, the dialog taken as ended with OK: the folder walk, then each device's merge.
void readLocalProject(ProjectDryRun& run, const CString& itmPath) {
    run.m_strCommand = u"HMItmSubmit";
    HMProjectTree_INFO& root = *run.m_pTree;
    root.m_strName = RemoveFileExtension(GetFileNameOfPath(itmPath));
    root.m_strPath = run.m_strProjectFolder;
    QxScanPrimaryDiagram(run.m_strProjectFolder);
    BuildTreeFromFolders(itmPath, &root);
    for (HMProjectTree_INFO* device : root.m_arrCabinets) QxMergeDeviceBom(device);
}

} // namespace

ProjectDryRun RunProjectDryRun(const CString& itmPath) {
    ProjectDryRun run;
    run.m_strProjectFolder = GetParentPath(itmPath) + u"\\";
    run.m_pTree = std::make_unique<HMProjectTree_INFO>();
    g_bBomCheckFailed = false;
    {
        const RecordedBoxes boxes(run.m_arrMessages);
        if (FileExists(run.m_strProjectFolder + u"Hexmoor.xml"))
            readKnownProject(run);
        else
            readLocalProject(run, itmPath);
    }
    run.m_bCheckFailed = g_bBomCheckFailed;
    g_bBomCheckFailed = false;
    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);

    if (run.m_pTree->m_arrCabinets.IsEmpty())
        run.m_strWhyNot = u"the project has no device";
    else if (run.m_bCheckFailed)
        run.m_strWhyNot = u"a cabinet check failed";
    run.m_bWouldSend = run.m_strWhyNot.IsEmpty();
    return run;
}

CString DevicePathInTree(const HMProjectTree_INFO& device) {
    CString path = device.m_strName;
    for (const HMProjectTree_INFO* node = device.m_pParent; node && node->m_pParent; node = node->m_pParent)
        path = node->m_strName + u"/" + path;
    return path;
}
