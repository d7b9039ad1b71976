// HMXmCreate: makes a local project from a project of the cloud, then shows it in the host's project manager.
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "module/commands/ProjectTrees.h"
#include "platform/host/Documents.h"
#include "platform/host/HostOutput.h"
#include "project/NodeNames.h"
#include "project/ProjectFiles.h"
#include "project/folders/DescriptionNotes.h"
#include "project/folders/NodeDocument.h"
#include "project/folders/TreeToFolders.h"
#include "support/FileSystem.h"
#include "support/Locations.h"

namespace {

void createChildren(CHexmoorInteFace& client, const CString& folder, const HMProjectTree_INFO& root) {
    // A child that fails has printed its own message; its siblings go on.
    for (const HMProjectTree_INFO* child : root.m_arrChildren) {
        if (HMIsNotSubProjectType(child->m_strType))
            CreateDeviceFromNode(client, folder, child);
        else
            CreateProjectFromNode(client, folder, child);
    }
}

} // namespace

void HMXmCreate() {
    if (!EnsureHMLogin()) return;
    CHexmoorInteFace& client = *g_pHexmoorClient;
    const CString projectsFolder = GetMyProjectsDir();

    CloudTree tree = TakeCloudTree(client, client.getProjectInfo(nullptr));
    if (!tree || tree->m_strName.IsEmpty()) return;
    if (HMRefuseUnsafeNodeName(projectsFolder, tree->m_strName)) return;

    const CString folder = projectsFolder + tree->m_strName + u"\\";
    if (!IsFolderEmpty(folder + u"*.*")) {
        const CString message = QxFormat(u"%s文件夹中已有内容，请删除或另选目录！", QxFs::ToNativeText(folder));
        AfxMessageBox(message, MB_OK | MB_ICONINFORMATION);
        acutPrintf(u"\n%s\n", message);
        return;
    }
    if (!QxFs::MakeFolder(folder)) {
        acutPrintf(u"\n%s\n", QxFormat(u"项目%s创建失败，无法建立文件夹%s！", tree->m_strName, QxFs::ToNativeText(folder)));
        return;
    }

    const CString projectFile = folder + tree->m_strName + u".itm";
    WriteProjectSkeleton(projectFile);
    SetRecentProject(projectFile);
    InsertNotes(projectFile, MakeDescriptionNotes(true));
    HMSaveNodeDocument(client, folder, tree.get());
    createChildren(client, folder, *tree);
    tree.reset();

    acutPrintf(u"%s\n", QxFormat(u"***新项目%s已建成***", QxFs::ToNativeText(projectFile)));
    AcApDocManager* documents = acDocManagerPtr();
    documents->sendStringToExecute(documents->curDocument(), u"xmmanage\n", false, true, true);
}
