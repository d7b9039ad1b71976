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

// Levels below the project that are made. Every file operation walks its whole path, so a chain of levels
// would cost the cube of its depth; the team centre's JSON form ends at the same depth.
constexpr int kDeepestLevel = 64;

bool refuseTooDeep(int level, const CString& parentFolder, const HMProjectTree_INFO& node) {
    if (level <= kDeepestLevel) return false;
    printBlock(QxFormat(u"%s中的“%s”超过%d层，已跳过该节点及其下级！", parentFolder, HMPrintableNodeName(node.m_strName),
                        kDeepestLevel));
    return true;
}

// A new node needs a folder that holds nothing yet; the message names the node (设备 or 项目) and the folder.
bool folderIsFree(const CString& kind, const CString& folder, const CString& name) {
    if (IsFolderEmpty(folder + u"*.*")) return true;
    printBlock(QxFormat(u"%s%s创建失败，%s文件夹中已有内容，请删除或另选目录！", kind, name, QxFs::ToNativeText(folder)));
    return false;
}

bool makeNodeFolder(const CString& kind, const CString& folder, const CString& name) {
    if (QxFs::MakeFolder(folder)) return true;
    printBlock(QxFormat(u"%s%s创建失败，无法建立文件夹%s！", kind, name, QxFs::ToNativeText(folder)));
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

bool createDevice(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node, int level);
bool createProject(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node, int level);

// A new child is a sub-project when its type is "100" and a device otherwise, an empty type included.
bool createChild(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* child, int level) {
    if (HMIsNotSubProjectType(child->m_strType)) return createDevice(client, parentFolder, child, level);
    return createProject(client, parentFolder, child, level);
}

bool createDevice(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node, int level) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName) || refuseTooDeep(level, parentFolder, *node)) return false;
    const CString& name = node->m_strName;
    const CString folder = parentFolder + name + u"\\";
    if (!folderIsFree(u"设备", folder, name) || !makeNodeFolder(u"设备", folder, name)) return false;

    const CString prjPath = folder + name + u".prj";
    WriteProjectSkeleton(prjPath);
    copyTemplateDrawing(folder);
    InsertNotes(prjPath, deviceNotes(*node));
    HMSaveNodeDocument(client, folder, node);
    acutPrintf(u"%s\n", QxFormat(u"***新设备%s已建成***", QxFs::ToNativeText(prjPath)));
    return true;
}

bool createProject(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node, int level) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName) || refuseTooDeep(level, parentFolder, *node)) return false;
    const CString& name = node->m_strName;
    const CString folder = parentFolder + name + u"\\";
    if (!folderIsFree(u"项目", folder, name) || !makeNodeFolder(u"项目", folder, name)) return false;

    const CString itmPath = folder + name + u".itm";
    WriteProjectSkeleton(itmPath);
    InsertNotes(itmPath, MakeDescriptionNotes(true));
    HMSaveNodeDocument(client, folder, node);
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) createChild(client, folder, child, level + 1);
    acutPrintf(u"%s\n", QxFormat(u"***新项目%s已建成***", QxFs::ToNativeText(itmPath)));
    return true;
}

void updateLocal(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node, int level) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return;
    const CString folder = parentFolder + node->m_strName + u"\\";
    if (IsFolderEmpty(folder + u"*.*")) {
        createChild(client, parentFolder, node, level);
        return;
    }
    if (refuseTooDeep(level, parentFolder, *node)) return;
    HMSaveNodeDocument(client, folder, node);
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) updateLocal(client, folder, child, level + 1);
}

// A device that the walk left out of its root's list (its document was not read) was not submitted; its
// document stays as it is, whatever the library marked.
bool leftOutOfSubmit(const HMProjectTree_INFO& node) {
    return HMIsDeviceType(node.m_strType) && node.m_pRoot &&
           node.m_pRoot->m_arrCabinets.Find(const_cast<HMProjectTree_INFO*>(&node)) < 0;
}

} // namespace

bool CreateDeviceFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    return createDevice(client, parentFolder, node, 1);
}

bool CreateProjectFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    return createProject(client, parentFolder, node, 1);
}

bool UpdateLocalFromServer(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    updateLocal(client, parentFolder, node, 1);
    return true;
}

void WriteBackChangedNodes(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node) {
    if (!node) return;
    // The documents are made durable together when the outermost call ends; nothing here reads them back.
    const QxFs::DurableWriteBatch batch;
    const bool isRoot = node->m_strType.IsEmpty();
    if (!isRoot && HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return;
    const CString folder = isRoot ? parentFolder : parentFolder + node->m_strName + u"\\";
    if (node->m_bChanged && !leftOutOfSubmit(*node)) HMSaveNodeDocument(client, folder, node);
    if (HMIsDeviceType(node->m_strType)) return;  // a device's children, if any, are not walked
    for (const HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) WriteBackChangedNodes(client, folder, child);
}
