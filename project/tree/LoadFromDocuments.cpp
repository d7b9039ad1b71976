// Walking a project that the cloud knows, one Hexmoor.xml per folder.
#include "project/tree/FoldersToTree.h"

#include "drawing/merge/DeviceBomMerge.h"
#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "platform/host/HostOutput.h"
#include "project/NodeNames.h"
#include "support/FileUtils.h"

namespace {

// The nodes of one walk whose own document was not read, by their folders.
using UnreadNodes = CStringArray;

void loadDeviceRows(const CXmlDocument& document, const CString& folder, HMProjectTree_INFO* node, bool extract) {
    if (!extract) {
        HMXmlReadProducts(document, node);
        return;
    }
    QxGetDeviceSecondaryRows(folder + node->m_strName + u".prj", node->m_arrSecondaryBom);
    QxMergeDeviceBom(node);
}

bool loadNode(const CString& parentFolder, HMProjectTree_INFO* node, bool extract, UnreadNodes& unread);

// A device counts among the root's cabinets only when its own document was read: one that was not would be
// sent with empty rows and written back with empty cabinet fields, and the rows the cloud holds for it lost.
void linkAndLoad(HMProjectTree_INFO* child, HMProjectTree_INFO* parent, HMProjectTree_INFO* root, const CString& folder,
                 bool extract, UnreadNodes& unread) {
    child->m_pParent = parent;
    child->m_pRoot = root;
    const bool device = HMIsNotSubProjectType(child->m_strType);
    const CString name = child->m_strName;
    if (!loadNode(folder, child, extract, unread)) {
        unread.Add(folder + name);
        return;
    }
    if (device && root) root->m_arrCabinets.Add(child);
}

bool loadNode(const CString& parentFolder, HMProjectTree_INFO* node, bool extract, UnreadNodes& unread) {
    if (HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return false;
    const CString folder = parentFolder + node->m_strName + u"\\";
    const CString documentPath = folder + u"Hexmoor.xml";
    if (!FileExists(documentPath)) return false;

    CXmlDocument document;
    HMXmlCreateDocument(document);
    if (document.IsNull()) return false;
    HMXmlLoadFile(document, documentPath);
    if (!HMXmlReadNodeWhole(document, node)) return false;
    // The document names the node afresh; that name, too, becomes a path below.
    if (HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return false;

    if (HMIsDeviceType(node->m_strType)) {
        loadDeviceRows(document, folder, node, extract);
        return true;
    }
    for (HMProjectTree_INFO* child : node->m_arrChildren)
        if (child) linkAndLoad(child, node, node->m_pRoot, folder, extract, unread);
    return true;
}

void tellUnread(const UnreadNodes& unread) {
    if (unread.IsEmpty()) return;
    CString list;
    for (const CString& folder : unread) list += u"\n" + HMPrintableNodeName(folder);
    AfxMessageBox(QxFormat(u"以下节点的Hexmoor.xml未能读取，已略过这些节点，其余节点照常进行："
                           u"%s\n可用HMUpdate从Hexmoor重建这些文件。",
                           list),
                  MB_OK | MB_ICONINFORMATION);
}

} // namespace

void LinkChildrenAndLoad(HMProjectTree_INFO* tree, const CString& folder, bool extract) {
    if (!tree) return;
    UnreadNodes unread;
    for (HMProjectTree_INFO* child : tree->m_arrChildren)
        if (child) linkAndLoad(child, tree, tree, folder, extract, unread);
    tellUnread(unread);
}

void LoadNodeFromDocument(const CString& parentFolder, HMProjectTree_INFO* node, bool extract) {
    if (!node) return;
    UnreadNodes unread;
    if (!loadNode(parentFolder, node, extract, unread)) unread.Add(parentFolder + node->m_strName);
    tellUnread(unread);
}
