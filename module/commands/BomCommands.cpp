// HMBomSubmit and HMBomCmp: the BOMs of a project that the cloud knows, extracted afresh from its drawings,
// are sent to the cloud or compared with the cloud's.
#include "drawing/assembly/PrimaryScan.h"
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "module/commands/CurrentProject.h"
#include "module/commands/ProjectTrees.h"
#include "platform/host/HostOutput.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"

namespace {

// Steps 1 to 6 shared by both commands: the login, the project, its root, the scan and the walk that
// extracts every device's rows. Null when the command ends before the walk (its message printed).
LocalTree extractProject(const char16_t* noDocumentMessage, CurrentProject& project, CXmlDocument& document) {
    if (!EnsureHMLogin()) return nullptr;
    g_bBomCheckFailed = false;
    project = ResolveCurrentProject();
    if (RefuseUnusableProject(project)) return nullptr;
    if (!project.HasDocument()) {
        acutPrintf(u"%s\n", QxFormat(noDocumentMessage, QxFs::ToNativeText(project.m_strPath)));
        return nullptr;
    }
    LocalTree tree = ReadProjectRoot(project.m_strDocument, document);
    QxScanPrimaryDiagram(project.m_strFolder);
    LinkChildrenAndLoad(tree.get(), project.m_strFolder, true);
    return tree;
}

} // namespace

void HMBomSubmit() {
    CurrentProject project;
    CXmlDocument document;
    const LocalTree tree = extractProject(u"项目%s的Hexmoor相关信息不存在，无法提交明细！请选择提交项目。", project, document);
    if (!tree) return;
    if (tree->m_arrCabinets.IsEmpty()) {
        AfxMessageBox(u"此项目没有屏柜，不能提交明细信息！", MB_OK | MB_ICONINFORMATION);
        return;
    }
    // A failed cabinet check has shown its own message: nothing is sent.
    if (g_bBomCheckFailed) {
        g_bBomCheckFailed = false;
        return;
    }
    CHexmoorInteFace& client = *g_pHexmoorClient;
    if (!client.submitBom(tree.get(), false)) AfxMessageBox(u"提交明细失败！", MB_OK | MB_ICONINFORMATION);
    // Nodes that the library marked before a failure are saved too.
    WriteBackChangedNodes(client, project.m_strFolder, tree.get());
}

void HMBomCmp() {
    CurrentProject project;
    CXmlDocument document;
    const LocalTree tree = extractProject(u"项目%s的Hexmoor相关信息不存在，无法进行比对！", project, document);
    if (!tree) return;
    if (g_bBomCheckFailed) {
        g_bBomCheckFailed = false;
        return;
    }
    g_pHexmoorClient->bomCmp(tree.get());
}
