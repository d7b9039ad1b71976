// Keeping a DOM to the characters of XML 1.0.
#include "exchange/dom/XmlChars.h"

#include <new>

namespace {

// The length of a forbidden character at `at`, 0 for an allowed one.
size_t forbiddenLength(std::string_view text, size_t at) {
    const auto byte = [&](size_t i) { return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0u; };
    const unsigned char first = byte(0);
    if (first < 0x20) return first == '\t' || first == '\n' || first == '\r' ? 0 : 1;
    if (first == 0xEF && byte(1) == 0xBF && (byte(2) == 0xBE || byte(2) == 0xBF)) return 3;  // U+FFFE, U+FFFF
    if (first == 0xED && byte(1) >= 0xA0 && byte(1) <= 0xBF && byte(2) >= 0x80 && byte(2) <= 0xBF) return 3;  // surrogates
    return 0;
}

bool holdsForbidden(std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i)
        if (forbiddenLength(text, i)) return true;
    return false;
}

template <typename Target>
void clean(Target target, const char* value) {
    if (!holdsForbidden(value)) return;
    if (!target.set_value(DropForbiddenXmlChars(value).c_str())) throw std::bad_alloc();
}

} // namespace

std::string DropForbiddenXmlChars(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        if (const size_t skip = forbiddenLength(utf8, i)) {
            i += skip;
            continue;
        }
        out += utf8[i++];
    }
    return out;
}

// Depth first without recursion: documents may nest a hundred thousand levels deep.
void DropForbiddenXmlChars(pugi::xml_node root) {
    pugi::xml_node node = root.first_child();
    while (node) {
        clean(node, node.value());
        for (pugi::xml_attribute attribute : node.attributes()) clean(attribute, attribute.value());
        if (node.first_child()) {
            node = node.first_child();
            continue;
        }
        while (node && node != root && !node.next_sibling()) node = node.parent();
        if (!node || node == root) break;
        node = node.next_sibling();
    }
}
