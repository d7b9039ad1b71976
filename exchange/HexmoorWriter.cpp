// Writing one project node into a Hexmoor.xml document. All indentation of the format is written as text
// nodes, so the serialised document is exactly the file's text.
#include "exchange/HexmoorWriter.h"

#include "platform/host/HostOutput.h"

namespace {

constexpr const char16_t* kIndent1 = u"\n\t";
constexpr const char16_t* kIndent2 = u"\n\t\t";
constexpr const char16_t* kIndent3 = u"\n\t\t\t";

void showBox(const CString& text) { MessageBoxW(nullptr, text, u"Corvane", MB_OK | MB_ICONINFORMATION); }

// Node and SubNode carry the same attributes in the same order; devices add the four cabinet fields.
void setNodeAttributes(const CXmlElement& element, const HMProjectTree_INFO& node) {
    element.setAttribute(u"Name", node.m_strName);
    element.setAttribute(u"ID", node.m_strID);
    element.setAttribute(u"Type", node.m_strType);
    if (!HMIsDeviceType(node.m_strType)) return;
    element.setAttribute(u"CirNo", node.m_strCirNo);
    element.setAttribute(u"CirName", node.m_strCirName);
    element.setAttribute(u"CirType", node.m_strCirType);
    element.setAttribute(u"CirSize", node.m_strCirSize);
}

void appendText(const CXmlDocument& document, const CXmlNode& parent, const char16_t* text) {
    parent.appendChild(document.createTextNode(text));
}

// A deep copy of the document element of a block of server-made XML; empty when the text does not parse,
// which leaves the block out of the document.
CXmlNode cloneBlock(const CString& text) {
    CXmlDocument scratch;
    if (!scratch.CreateInstance() || !scratch.loadXML(text)) return CXmlNode();
    return scratch.documentElement().cloneNode(true);
}

CXmlElement makeBoms(const CXmlDocument& document, const HMProjectTree_INFO& node) {
    const CXmlElement boms = document.createElement(u"Boms");
    const CXmlNode cabinet = cloneBlock(node.m_strBoms);
    if (cabinet) {
        appendText(document, boms, kIndent3);
        boms.appendChild(cabinet);
    }
    appendText(document, boms, kIndent2);
    return boms;
}

CXmlElement makeSubNodes(const CXmlDocument& document, const HMProjectTree_INFO& node) {
    const CXmlElement subNodes = document.createElement(u"SubNodes");
    for (const HMProjectTree_INFO* child : node.m_arrChildren) {
        const CXmlElement subNode = document.createElement(u"SubNode");
        setNodeAttributes(subNode, *child);
        appendText(document, subNodes, kIndent3);
        subNodes.appendChild(subNode);
    }
    appendText(document, subNodes, kIndent2);
    return subNodes;
}

CXmlElement makeDataSchema(const CXmlDocument& document, const HMProjectTree_INFO& node) {
    const CXmlElement dataSchema = document.createElement(u"DataSchema");
    appendText(document, dataSchema, kIndent3);
    const CXmlNode newDataSet = cloneBlock(node.m_strDataSchema);
    if (newDataSet) dataSchema.appendChild(newDataSet);
    appendText(document, dataSchema, kIndent2);
    return dataSchema;
}

} // namespace

void HMXmlCreateDocument(CXmlDocument& document) {
    if (!document.CreateInstance()) {
        showBox(u"Failed to create DOM document interface pointer.\n");
        return;
    }
    try {
        document.appendChild(document.createProcessingInstruction(u"xml", u"version='1.0'"));
        document.appendChild(document.createElement(u"Hexmoor"));
    } catch (const CXmlDomError&) {
        document.Release();
        showBox(u"创建XML文档出错！");
    }
}

bool HMXmlWriteNode(const CXmlDocument& document, const HMProjectTree_INFO* node) {
    if (!node) return false;
    const CXmlElement hexmoor = document.documentElement();
    const CXmlElement element = document.createElement(u"Node");
    setNodeAttributes(element, *node);

    const bool device = HMIsDeviceType(node->m_strType);
    const CXmlElement block = device ? makeBoms(document, *node) : makeSubNodes(document, *node);
    appendText(document, element, kIndent2);
    element.appendChild(block);

    const CXmlElement dataSchema = makeDataSchema(document, *node);
    appendText(document, element, kIndent2);
    element.appendChild(dataSchema);
    appendText(document, element, kIndent1);

    appendText(document, hexmoor, kIndent1);
    hexmoor.appendChild(element);
    appendText(document, hexmoor, u"\n");
    return true;
}

void HMXmlDocumentText(const CXmlDocument& document, CString& text) { text = document.xml(); }
