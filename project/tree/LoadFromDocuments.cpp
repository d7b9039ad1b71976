// Walking a project that the cloud knows, one Hexmoor.xml per folder.
#include "project/tree/FoldersToTree.h"

#include "drawing/merge/DeviceBomMerge.h"
#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "project/NodeNames.h"
#include "support/FileUtils.h"

namespace {

void linkChild(HMProjectTree_INFO* child, HMProjectTree_INFO* parent, HMProjectTree_INFO* root) {
    child->m_pParent = parent;
    child->m_pRoot = root;
    if (HMIsNotSubProjectType(child->m_strType) && root) root->m_arrCabinets.Add(child);
}

void loadDeviceRows(const CXmlDocument& document, const CString& folder, HMProjectTree_INFO* node, bool extract) {
    if (!extract) {
        HMXmlReadProducts(document, node);
        return;
    }
    QxGetDeviceSecondaryRows(folder + node->m_strName + u".prj", node->m_arrSecondaryBom);
    QxMergeDeviceBom(node);
}

} // namespace

void LinkChildrenAndLoad(HMProjectTree_INFO* tree, const CString& folder, bool extract) {
    if (!tree) return;
    for (HMProjectTree_INFO* child : tree->m_arrChildren) {
        if (!child) continue;
        linkChild(child, tree, tree);
        LoadNodeFromDocument(folder, child, extract);
    }
}

void LoadNodeFromDocument(const CString& parentFolder, HMProjectTree_INFO* node, bool extract) {
    if (!node || HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return;
    const CString folder = parentFolder + node->m_strName + u"\\";
    const CString documentPath = folder + u"Hexmoor.xml";
    if (!FileExists(documentPath)) return;

    CXmlDocument document;
    HMXmlCreateDocument(document);
    if (document.IsNull()) return;
    HMXmlLoadFile(document, documentPath);
    HMXmlReadNode(document, node);
    // The document names the node afresh; that name, too, becomes a path below.
    if (HMRefuseUnsafeNodeName(parentFolder, node->m_strName)) return;

    if (HMIsDeviceType(node->m_strType)) {
        loadDeviceRows(document, folder, node, extract);
        return;
    }
    for (HMProjectTree_INFO* child : node->m_arrChildren) {
        if (!child) continue;
        linkChild(child, node, node->m_pRoot);
        LoadNodeFromDocument(folder, child, extract);
    }
}
