// Parsing of whole documents: finding the encoding of a file, and holding a parse to what a DOM accepts.
#include "exchange/dom/XmlStore.h"

#include "exchange/XmlEncodingName.h"
#include "exchange/dom/XmlChars.h"
#include "support/CString.h"
#include "support/Encoding.h"
#include "support/Format.h"

#include <algorithm>
#include <cctype>
#include <new>
#include <optional>
#include <string>

namespace {

bool startsWith(std::string_view bytes, std::string_view prefix) { return bytes.substr(0, prefix.size()) == prefix; }

bool hasByteOrderMark(std::string_view bytes) {
    return startsWith(bytes, "\xEF\xBB\xBF") || startsWith(bytes, "\xFF\xFE") || startsWith(bytes, "\xFE\xFF") ||
           startsWith(bytes, std::string_view("\x00\x00\xFE\xFF", 4));
}

// The encoding that an ASCII-compatible declaration names, lower case; empty when none is named.
std::string declaredEncoding(std::string_view bytes) {
    if (!startsWith(bytes, "<?xml")) return {};
    const size_t end = bytes.find("?>");
    if (end == std::string_view::npos) return {};
    const std::string_view declaration = bytes.substr(0, end);
    const size_t key = declaration.find("encoding");
    if (key == std::string_view::npos) return {};
    const size_t open = declaration.find_first_of("'\"", key);
    if (open == std::string_view::npos) return {};
    const size_t close = declaration.find(declaration[open], open + 1);
    if (close == std::string_view::npos) return {};
    std::string name(declaration.substr(open + 1, close - open - 1));
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

// Encodings that pugixml reads by itself from an ASCII-compatible file.
bool pugixmlReads(const std::string& name) {
    // A file that begins with an ASCII declaration is no UTF-16, whatever the declaration claims.
    static const char* const known[] = {"utf-8", "utf8", "us-ascii", "ascii", "iso-8859-1", "latin1", "latin-1",
                                        "utf-16", "utf16", "ucs-2"};
    return std::any_of(std::begin(known), std::end(known), [&](const char* k) { return name == k; });
}

bool isXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// pugixml takes several top-level elements or top-level text without complaint; a DOM takes one element and
// nothing but white space between the top-level nodes. The parse runs as a fragment so that both show.
bool keepsToOneDocument(pugi::xml_document& doc, CString& reason) {
    int elements = 0;
    for (pugi::xml_node child = doc.first_child(); child;) {
        const pugi::xml_node next = child.next_sibling();
        switch (child.type()) {
        case pugi::node_element:
            ++elements;
            break;
        case pugi::node_pcdata: {
            const std::string_view text = child.value();
            if (!std::all_of(text.begin(), text.end(), isXmlSpace)) {
                reason = u"Invalid at the top level of the document.";
                return false;
            }
            doc.remove_child(child);
            break;
        }
        case pugi::node_cdata:
            reason = u"Invalid at the top level of the document.";
            return false;
        default:
            break;
        }
        child = next;
    }
    if (elements == 0) reason = u"XML document must have a top level element.";
    if (elements > 1) reason = u"Only one top level element is allowed in an XML document.";
    return elements == 1;
}

bool parse(std::string_view bytes, pugi::xml_encoding encoding, CXmlStore& store, CString& reason) {
    const pugi::xml_parse_result result =
        store.doc.load_buffer(bytes.data(), bytes.size(), kXmlParseOptions | pugi::parse_fragment, encoding);
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    if (!result) {
        reason = QxFormat(u"%s at offset %d", CString::FromUtf8(result.description()), static_cast<long long>(result.offset));
        store.doc.reset();
        return false;
    }
    if (keepsToOneDocument(store.doc, reason)) {
        DropForbiddenXmlChars(store.doc);
        return true;
    }
    store.doc.reset();
    return false;
}

} // namespace

bool ParseXmlFile(std::string_view bytes, CXmlStore& store, CString& reason) {
    if (hasByteOrderMark(bytes)) return parse(bytes, pugi::encoding_auto, store, reason);
    const std::string declared = declaredEncoding(bytes);
    if (declared.empty() || pugixmlReads(declared)) return parse(bytes, pugi::encoding_auto, store, reason);
    // A legacy code page named in the declaration (GB2312, GBK, ...) is read through iconv.
    const std::string decoder = XmlDecoderName(declared);
    const std::optional<std::u16string> text = DecodeCodePage(bytes, decoder);
    if (!text) {
        reason = CString(u"System does not support the specified encoding: ") + CString::FromUtf8(declared);
        return false;
    }
    if (!XmlLabelFitsAsciiBytes(decoder)) return parse(bytes, pugi::encoding_auto, store, reason);
    const std::string utf8 = Utf16ToUtf8(*text);
    return parse(utf8, pugi::encoding_utf8, store, reason);
}

bool ParseXmlText(std::string_view utf8, CXmlStore& store, CString& reason) {
    return parse(utf8, pugi::encoding_utf8, store, reason);
}
