// HMItmSubmit: sends a local project that the cloud does not know yet. The tree comes from the project's
// folders; the person confirms every device's cabinet in the cabinet dialog before the project goes.
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/DeviceBomMerge.h"
#include "module/ModuleResources.h"
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "module/commands/CurrentProject.h"
#include "module/commands/ProjectTrees.h"
#include "platform/host/HostOutput.h"
#include "project/ProjectFiles.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"
#include "support/Locations.h"
#include "support/dialog/SetCabInfo.h"

namespace {

void showBox(const char16_t* text) {
    AfxMessageBox(text, MB_OK | MB_ICONINFORMATION);
}

// The root of the new project; nothing of a Hexmoor.xml is read, the cloud does not know the project yet.
LocalTree makeRoot(const CurrentProject& project) {
    LocalTree tree = std::make_unique<HMProjectTree_INFO>();
    tree->m_strName = project.m_strName;
    tree->m_strPath = project.m_strFolder;
    return tree;
}

// Each device's rows, and the cabinet fields the dialog gave it written into its .prj.
void mergeDevices(const HMProjectTree_INFO& root) {
    for (HMProjectTree_INFO* device : root.m_arrCabinets) {
        QxMergeDeviceBom(device);
        UpdateDeviceNotes(device);
    }
}

void submitProject(const CurrentProject& project, HMProjectTree_INFO* tree) {
    // A failed cabinet check has shown its own message: nothing is sent.
    if (g_bBomCheckFailed) {
        g_bBomCheckFailed = false;
        return;
    }
    CHexmoorInteFace& client = *g_pHexmoorClient;
    if (!client.submitItm(tree)) {
        showBox(u"Corvane新建项目提交失败，可能是服务器上已有同名项目或网络连接故障！");
        return;
    }
    WriteBackChangedNodes(client, project.m_strFolder, tree);
    showBox(u"Corvane新建项目提交成功！");
}

} // namespace

void HMItmSubmit() {
    if (!EnsureHMLogin()) return;
    g_bBomCheckFailed = false;
    const CString path = GetRecentProject();
    if (path.IsEmpty()) {
        showBox(u"本地项目不存在，请先创建项目！");
        return;
    }
    const CurrentProject project = ResolveProjectFile(path);
    if (RefuseUnusableProject(project)) return;

    const LocalTree tree = makeRoot(project);
    QxScanPrimaryDiagram(project.m_strFolder);
    BuildTreeFromFolders(path, tree.get());
    if (tree->m_arrCabinets.IsEmpty()) {
        showBox(u"当前项目没有屏柜，请选创建屏柜再提交！");
        return;
    }

    // Declared after the tree: the dialog goes first, then the module's resources, then the tree.
    const ModuleResourceScope resources;
    CSetCabInfo dialog;
    dialog.m_pProjectTree = tree.get();
    // Any result but cancel counts as OK.
    if (dialog.DoModal() == IDCANCEL) return;

    mergeDevices(*tree);
    submitProject(project, tree.get());
}
