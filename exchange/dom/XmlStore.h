// The store behind every reference into one DOM document: the pugixml tree, shared by the document and
// every node or list taken from it, so that no reference outlives the nodes it points to.
#pragma once

#include <pugixml.hpp>

#include "exchange/dom/XmlDomError.h"

#include <memory>
#include <new>
#include <string>
#include <string_view>

struct CXmlStore {
    pugi::xml_document doc;

    // Where created nodes wait until they are appended: pugixml has no parentless nodes, so they hang under
    // a hidden element of the document that serialisation, documentElement and XPath results never show.
    pugi::xml_node Unattached();
    bool IsHidden(pugi::xml_node node) const;

    // The outermost node of the unattached subtree that holds `node`; empty when `node` is in the document
    // proper (or is the hidden element itself).
    pugi::xml_node UnattachedTop(pugi::xml_node node) const;

    // The first element of the document proper, or an empty node.
    pugi::xml_node DocumentElement() const;

private:
    pugi::xml_node m_unattached;
};

// The options of every parse and every print of this layer: white-space text, the declaration, processing
// instructions, comments and the document type are all kept; printing adds and removes nothing.
inline constexpr unsigned kXmlParseOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_declaration |
                                             pugi::parse_pi | pugi::parse_comments | pugi::parse_doctype;
inline constexpr unsigned kXmlPrintOptions = pugi::format_raw | pugi::format_no_declaration;

// Fills the store from raw bytes of a file (encoding found from the byte-order mark or the declaration) or
// from UTF-8 text. False with the reason when the text is not one well-formed document.
bool ParseXmlFile(std::string_view bytes, CXmlStore& store, CString& reason);
bool ParseXmlText(std::string_view utf8, CXmlStore& store, CString& reason);

// Runs one DOM operation with its failures turned into CXmlDomError: memory that cannot be had, and the
// XML library's own complaints.
template <typename Operation>
auto QxXmlGuard(Operation&& operation) -> decltype(operation()) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        throw CXmlDomError(CXmlDomError::kOutOfMemory);
    } catch (const pugi::xpath_exception& error) {
        throw CXmlDomError(CXmlDomError::kUnspecified, CString::FromUtf8(error.what()));
    }
}

// Text crosses into the library as UTF-8 and comes back as wide text.
std::string ToXmlText(const CString& text);
CString FromXmlText(const char* utf8);

// Raises the library's error for a name that no element or attribute may have.
void CheckXmlName(const CString& name);

// Serialises a node exactly, with the print options above.
CString PrintXmlNode(pugi::xml_node node);
