// A DOM document: owned by whoever created it and released by its destructor (or Release). An object that
// was never created answers every operation with the invalid-pointer error, as an empty interface would.
#pragma once

#include "exchange/dom/XmlNode.h"

class QX_API CXmlDocument {
public:
    CXmlDocument() = default;
    CXmlDocument(CXmlDocument&&) noexcept = default;
    CXmlDocument& operator=(CXmlDocument&&) noexcept = default;
    CXmlDocument(const CXmlDocument&) = delete;
    CXmlDocument& operator=(const CXmlDocument&) = delete;

    // Makes a new, empty document in place of whatever this held; false when it cannot be made.
    bool CreateInstance();
    // Lets the document go; references taken from it keep their nodes alive.
    void Release();
    bool IsNull() const { return !m_store; }
    explicit operator bool() const { return !IsNull(); }

    // Replace the content by the parsed file or text. A file that cannot be read and text that is empty or
    // not one well-formed document give false and leave the document empty; no error is raised for them.
    bool load(const CString& path);
    bool loadXML(const CString& text);
    // Why the last load or loadXML failed, empty after a success.
    const CString& parseErrorReason() const { return m_parseError; }

    // New nodes, not yet attached.
    CXmlNode createProcessingInstruction(const CString& target, const CString& data) const;
    CXmlElement createElement(const CString& name) const;
    // The text is kept exactly, white space included.
    CXmlNode createTextNode(const CString& text) const;

    CXmlNode appendChild(const CXmlNode& child) const;
    // The document element, or an empty reference.
    CXmlElement documentElement() const;
    CXmlNode selectSingleNode(const CString& xpath) const;
    CXmlNodeList selectNodes(const CString& xpath) const;
    // The whole document, top-level nodes one after the other with nothing between them.
    CString xml() const;

private:
    CXmlNode root() const;
    CXmlNode create(pugi::xml_node_type type, const CString& name, const CString& value) const;
    bool replaceContent(bool (*parse)(std::string_view, CXmlStore&, CString&), std::string_view bytes);

    std::shared_ptr<CXmlStore> m_store;
    CString m_parseError;
};
