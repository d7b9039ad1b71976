// References into a DOM document: nodes, elements and node lists. A reference is a cheap value that shares
// the document's store, so it stays valid after the document is released or reloaded. Every operation on
// an empty reference raises CXmlDomError with the invalid-pointer code.
#pragma once

#include "exchange/dom/XmlDomError.h"

#include <pugixml.hpp>

#include <memory>
#include <optional>
#include <vector>

struct CXmlStore;
class CXmlNodeList;

class QX_API CXmlNode {
public:
    CXmlNode() = default;

    bool IsNull() const { return !m_node; }
    explicit operator bool() const { return !IsNull(); }
    // True when both refer to the same node of the same document.
    bool IsSameNode(const CXmlNode& other) const { return m_node && m_node == other.m_node; }

    // Appends at the end of this node's children and gives the appended node. A node of this document moves;
    // a node of another document (a clone made there) is copied in, and the copy is what is given back.
    CXmlNode appendChild(const CXmlNode& child) const;
    // A copy not yet attached; deep copies the whole subtree.
    CXmlNode cloneNode(bool deep) const;
    // Absolute paths select from the document; nodes not yet attached are never found from it.
    CXmlNode selectSingleNode(const CString& xpath) const;
    CXmlNodeList selectNodes(const CString& xpath) const;
    // The node serialised with its own start and end tags, with no white space added or removed.
    CString xml() const;

protected:
    CXmlNode(std::shared_ptr<CXmlStore> store, pugi::xml_node node) : m_store(std::move(store)), m_node(node) {}
    // The node, or the invalid-pointer error for an empty reference.
    pugi::xml_node checked() const;

    std::shared_ptr<CXmlStore> m_store;
    pugi::xml_node m_node;

    friend class CXmlDocument;
    friend class CXmlNodeList;
    friend class CXmlElement;
};

class QX_API CXmlElement : public CXmlNode {
public:
    CXmlElement() = default;
    // The element interface of a node: empty when the node is no element (no error is raised for that).
    explicit CXmlElement(const CXmlNode& node);

    // Replaces the value of an existing attribute in place; a new one goes behind the others.
    void setAttribute(const CString& name, const CString& value) const;
    // nullopt when the attribute is absent, an empty text when it is present and empty.
    std::optional<CString> getAttribute(const CString& name) const;
};

class QX_API CXmlNodeList {
public:
    CXmlNodeList() = default;

    bool IsNull() const { return !m_entries; }
    int length() const;
    // The entry at `index`, or an empty reference outside the list.
    CXmlNode item(int index) const;

private:
    struct Entries {
        std::shared_ptr<CXmlStore> store;
        std::vector<pugi::xml_node> nodes;
    };
    explicit CXmlNodeList(std::shared_ptr<const Entries> entries) : m_entries(std::move(entries)) {}

    std::shared_ptr<const Entries> m_entries;

    friend class CXmlNode;
};
