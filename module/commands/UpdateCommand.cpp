// HMUpdate: brings the local project of the cloud up to the cloud's state. Local folders and files are only
// ever added or rewritten: a node that has gone from the cloud keeps its folder.
#include "exchange/HexmoorWriter.h"
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "module/commands/CurrentProject.h"
#include "module/commands/ProjectTrees.h"
#include "platform/host/Documents.h"
#include "platform/host/HostOutput.h"
#include "project/folders/NodeDocument.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"

void HMUpdate() {
    if (!EnsureHMLogin()) return;
    const CurrentProject project = ResolveCurrentProject();
    if (RefuseUnusableProject(project)) return;
    if (!project.HasDocument()) {
        acutPrintf(u"%s\n", QxFormat(u"项目%s的Hexmoor相关信息不存在，无法从Hexmoor调用明细！", QxFs::ToNativeText(project.m_strPath)));
        return;
    }
    CHexmoorInteFace& client = *g_pHexmoorClient;
    CXmlDocument document;
    LocalTree local = ReadProjectRoot(project.m_strDocument, document);
    LinkChildrenAndLoad(local.get(), project.m_strFolder, false);
    CloudTree server = TakeCloudTree(client, client.getProjectInfo(local.get()));
    local.reset();
    if (!server) return;

    HMSaveNodeDocument(client, project.m_strFolder, server.get());
    for (const HMProjectTree_INFO* child : server->m_arrChildren) UpdateLocalFromServer(client, project.m_strFolder, child);
    acutPrintf(u"项目%s更新完毕！\n", server->m_strName);
    server.reset();

    AcApDocManager* documents = acDocManagerPtr();
    documents->sendStringToExecute(documents->curDocument(), u"xmmanage\n", false, true, true);
}
