// The walks from a project tree to folders.
#include "project/folders/TreeToFolders.h"

#include "platform/host/HostOutput.h"
#include "project/NodeNames.h"
#include "project/ProjectFiles.h"
#include "project/folders/DescriptionNotes.h"
#include "project/folders/NodeDocument.h"
#include "support/FileSystem.h"
#include "support/Locations.h"

namespace {

const CString kTemplateDrawing = u"图纸.DWG";

void printBlock(const CString& message) { acutPrintf(u"\n%s\n", message); }

// A new node needs a folder that holds nothing yet; the message names the node (设备 or 项目) and the folder.
bool folderIsFree(const CString& kind, const CString& folder, const CString& name) {
    if (IsFolderEmpty(folder + u"*.*")) return true;
    printBlock(QxFormat(u"%s%s创建失败，%s文件夹中已有内容，请删除或另选目录！", kind, name, folder));
    return false;
}

bool makeNodeFolder(const CString& kind, const CString& folder, const CString& name) {
    if (QxFs::MakeFolder(folder)) return true;
    printBlock(QxFormat(u"%s%s创建失败，无法建立文件夹%s！", kind, name, folder));
    return false;
}

void copyTemplateDrawing(const CString& folder) {
    const CString installDir = GetLocalInstallDir();
    if (installDir.IsEmpty()) return;  // no install folder: there is no template to copy
    QxFs::CopyFile(installDir + u"Support\\TEMPLATE\\" + kTemplateDrawing, folder + kTemplateDrawing, true);
}

PrjNoteList deviceNotes(const HMProjectTree_INFO& node) {
    PrjNoteList notes = MakeDescriptionNotes(false);
    notes.Add({u"柜编号", node.m_strCirNo});
    notes.Add({u"柜名称", node.m_strCirName});
    notes.Add({u"柜型号", node.m_strCirType});
    notes.Add({u"柜体尺寸", node.m_strCirSize});
    return notes;
}

// A new child is a sub-project when its type is "100" and a device otherwise, an empty type included.
bool createChild(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* child) {
    if (HMIsNotSubProjectType(child->m_strType)) return CreateDeviceFromNode(client, parentFolder, child);
    return CreateProjectFromNode(client, parentFolder, child);
}

} // namespace

bool CreateDeviceFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return false;
    const CString& name = node->m_strName;
    const CString folder = parentFolder + name + u"\\";
    if (!folderIsFree(u"设备", folder, name) || !makeNodeFolder(u"设备", folder, name)) return false;

    const CString prjPath = folder + name + u".prj";
    WriteProjectSkeleton(prjPath);
    copyTemplateDrawing(folder);
    InsertNotes(prjPath, deviceNotes(*node));
    HMSaveNodeDocument(client, folder, node);
    acutPrintf(u"%s\n", QxFormat(u"***新设备%s已建成***", prjPath));
    return true;
}

bool CreateProjectFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return false;
    const CString& name = node->m_strName;
    const CString folder = parentFolder + name + u"\\";
    if (!folderIsFree(u"项目", folder, name) || !makeNodeFolder(u"项目", folder, name)) return false;

    const CString itmPath = folder + name + u".itm";
    WriteProjectSkeleton(itmPath);
    InsertNotes(itmPath, MakeDescriptionNotes(true));
    HMSaveNodeDocument(client, folder, node);
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) createChild(client, folder, child);
    acutPrintf(u"%s\n", QxFormat(u"***新项目%s已建成***", itmPath));
    return true;
}

bool UpdateLocalFromServer(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return true;
    const CString folder = parentFolder + node->m_strName + u"\\";
    if (IsFolderEmpty(folder + u"*.*")) {
        createChild(client, parentFolder, node);
        return true;
    }
    HMSaveNodeDocument(client, folder, node);
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) UpdateLocalFromServer(client, folder, child);
    return true;
}

void WriteBackChangedNodes(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    if (!node) return;
    // The documents are made durable together when the outermost call ends; nothing here reads them back.
    const QxFs::DurableWriteBatch batch;
    const bool isRoot = node->m_strType.IsEmpty();
    if (!isRoot && HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return;
    const CString folder = isRoot ? parentFolder : parentFolder + node->m_strName + u"\\";
    if (node->m_bChanged) HMSaveNodeDocument(client, folder, node);
    if (HMIsDeviceType(node->m_strType)) return;  // a device's children, if any, are not walked
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) WriteBackChangedNodes(client, folder, child);
}
