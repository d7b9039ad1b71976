// Reading one project node back from a Hexmoor.xml document, by the format's four absolute paths.
#include "exchange/HexmoorReader.h"

#include "platform/host/HostOutput.h"

#include <memory>

namespace {

// A missing attribute has no text to give; the read fails as it would on any other DOM error.
CString requiredAttribute(const CXmlElement& element, const char16_t* name) {
    std::optional<CString> value = element.getAttribute(name);
    if (!value) throw CXmlDomError(CXmlDomError::kTypeMismatch);
    return std::move(*value);
}

void readChildren(const CXmlDocument& document, HMProjectTree_INFO& node) {
    const CXmlNodeList subNodes = document.selectNodes(u"/Hexmoor/Node/SubNodes/SubNode");
    for (int i = 0; i < subNodes.length(); ++i) {
        const CXmlElement subNode(subNodes.item(i));
        auto child = std::make_unique<HMProjectTree_INFO>();
        child->m_strName = requiredAttribute(subNode, u"Name");
        child->m_strID = requiredAttribute(subNode, u"ID");
        child->m_strType = requiredAttribute(subNode, u"Type");
        node.m_arrChildren.Add(child.release());
    }
}

} // namespace

bool HMXmlLoadFile(CXmlDocument& document, const CString& path) {
    try {
        return document.load(path);
    } catch (const CXmlDomError&) {
        return false;
    }
}

bool HMXmlReadNode(const CXmlDocument& document, HMProjectTree_INFO* node) {
    HMXmlReadNodeWhole(document, node);
    return false;
}

bool HMXmlReadNodeWhole(const CXmlDocument& document, HMProjectTree_INFO* node) {
    if (!node) return false;
    try {
        const CXmlElement element(document.selectSingleNode(u"/Hexmoor/Node"));
        node->m_strName = requiredAttribute(element, u"Name");
        node->m_strID = requiredAttribute(element, u"ID");
        node->m_strType = requiredAttribute(element, u"Type");

        node->m_strDataSchema = document.selectSingleNode(u"/Hexmoor/Node/DataSchema/NewDataSet").xml();

        if (!HMIsDeviceType(node->m_strType)) {
            readChildren(document, *node);
            return true;
        }
        node->m_strCirNo = requiredAttribute(element, u"CirNo");
        node->m_strCirName = requiredAttribute(element, u"CirName");
        node->m_strCirType = requiredAttribute(element, u"CirType");
        node->m_strCirSize = requiredAttribute(element, u"CirSize");
        const CXmlNode cabinet = document.selectSingleNode(u"/Hexmoor/Node/Boms/cabinet");
        if (cabinet) node->m_strBoms = cabinet.xml();
        return true;
    } catch (const CXmlDomError& error) {
        MessageBoxW(nullptr, error.ErrorMessage(), u"Corvane", MB_OK | MB_ICONINFORMATION);
    }
    return false;
}
