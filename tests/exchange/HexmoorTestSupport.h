// Small builders shared by the Hexmoor.xml tests: nodes, the written text of a node, a read of a text.
#pragma once

#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "platform/cloud/HexmoorXmlFile.h"
#include "common/TempFolder.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace hexmoor_test {

inline std::unique_ptr<HMProjectTree_INFO> makeNode(const CString& name, const CString& id, const CString& type) {
    auto node = std::make_unique<HMProjectTree_INFO>();
    node->m_strName = name;
    node->m_strID = id;
    node->m_strType = type;
    return node;
}

inline HMProjectTree_INFO* addChild(HMProjectTree_INFO& parent, const CString& name, const CString& id, const CString& type) {
    HMProjectTree_INFO* child = makeNode(name, id, type).release();
    child->m_pParent = &parent;
    parent.m_arrChildren.Add(child);
    return child;
}

inline void setCabinet(HMProjectTree_INFO& node, const CString& no, const CString& name, const CString& type, const CString& size) {
    node.m_strCirNo = no;
    node.m_strCirName = name;
    node.m_strCirType = type;
    node.m_strCirSize = size;
}

// A node's text fields in declaration order joined by "|", trailing empty ones left out, then a line for each
// child's.
inline std::string described(const HMProjectTree_INFO& node) {
    const auto joined = [](const HMProjectTree_INFO& of) {
        std::string text;
        for (const CString* field : {&of.m_strName, &of.m_strID, &of.m_strType, &of.m_strCirNo, &of.m_strCirName,
                                     &of.m_strCirType, &of.m_strCirSize, &of.m_strBoms, &of.m_strDataSchema})
            text += field->ToUtf8() + "|";
        while (!text.empty() && text.back() == '|') text.pop_back();
        return text;
    };
    std::string text = joined(node);
    for (const HMProjectTree_INFO* child : node.m_arrChildren) text += "\n  " + joined(*child);
    return text;
}

// The text that saveXml would be handed for the node.
inline CString writtenText(const HMProjectTree_INFO& node) {
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_TRUE(HMXmlWriteNode(document, &node));
    CString text;
    HMXmlDocumentText(document, text);
    return text;
}

// Saves the text as the client does, then reads it back as the commands do.
inline void saveAndRead(const TempFolder& folder, const CString& text, HMProjectTree_INFO& node) {
    const CString path = folder.logic() + u"Hexmoor.xml";
    ASSERT_TRUE(SaveHexmoorXml(path, text));
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_TRUE(HMXmlLoadFile(document, path));
    HMXmlReadNode(document, &node);
    if (HMIsDeviceType(node.m_strType)) HMXmlReadProducts(document, &node);
}

// Reads raw file bytes as the commands do.
inline void readBytes(const TempFolder& folder, const std::string& bytes, HMProjectTree_INFO& node) {
    folder.writeFile("Hexmoor.xml", bytes);
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, folder.logic() + u"Hexmoor.xml");
    HMXmlReadNode(document, &node);
}

} // namespace hexmoor_test
