// Decoding DXF strings.
#include "drawing/dxf/DxfTextDecoder.h"

#include "support/Encoding.h"

#include <cctype>

namespace {

bool isAscii(std::string_view bytes) {
    for (char ch : bytes)
        if (static_cast<unsigned char>(ch) >= 0x80) return false;
    return true;
}

int hexValue(char16_t ch) {
    if (ch >= u'0' && ch <= u'9') return ch - u'0';
    if (ch >= u'A' && ch <= u'F') return ch - u'A' + 10;
    if (ch >= u'a' && ch <= u'f') return ch - u'a' + 10;
    return -1;
}

// The four hexadecimal digits at text[pos], or -1.
int hex4(const std::u16string& text, size_t pos) {
    if (pos + 4 > text.size()) return -1;
    int value = 0;
    for (size_t i = pos; i < pos + 4; ++i) {
        const int digit = hexValue(text[i]);
        if (digit < 0) return -1;
        value = value * 16 + digit;
    }
    return value;
}

// The code page of an \M+N escape's digit N.
const char* multiByteCodePage(char16_t digit) {
    switch (digit) {
    case u'1': return "CP932";
    case u'2': return "CP950";
    case u'3': return "CP949";
    case u'4': return "JOHAB";
    case u'5': return "GBK";
    default: return nullptr;
    }
}

// Caret notation, as the CAD host reads it when it opens a DXF file: "^" and a character from "A" to "_"
// stand for the control character 64 below it ("^I" a tab, "^J" a line feed), "^ " for a caret. A caret
// before anything else, or at the end, stays as written; so does "^@", which would cut the text short.
std::u16string decodeCarets(std::u16string text) {
    if (text.find(u'^') == std::u16string::npos) return text;
    std::u16string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        if (text[i] == u'^' && next == u' ') {
            out += u'^';
            ++i;
        } else if (text[i] == u'^' && next >= u'A' && next <= u'_') {
            out += static_cast<char16_t>(next - u'@');
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::u16string decodeEscapes(const std::u16string& text) {
    if (text.find(u'\\') == std::u16string::npos) return text;
    std::u16string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t ch = text[i];
        if (ch == u'\\' && i + 2 < text.size() && (text[i + 1] == u'U' || text[i + 1] == u'u') && text[i + 2] == u'+') {
            const int code = hex4(text, i + 3);
            if (code >= 0) {
                out += static_cast<char16_t>(code);
                i += 6;
                continue;
            }
        }
        if (ch == u'\\' && i + 3 < text.size() && (text[i + 1] == u'M' || text[i + 1] == u'm') && text[i + 2] == u'+') {
            const char* codePage = multiByteCodePage(text[i + 3]);
            const int code = hex4(text, i + 4);
            if (codePage != nullptr && code >= 0) {
                const std::string bytes{static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
                if (auto decoded = DecodeCodePage(bytes, codePage); decoded && decoded->size() == 1) {
                    out += *decoded;
                    i += 7;
                    continue;
                }
            }
        }
        out += ch;
    }
    return out;
}

} // namespace

std::string IconvNameOfDwgCodePage(std::string_view name) {
    std::string upper;
    for (char ch : name)
        if (ch != ' ' && ch != '\t' && ch != '\r') upper += static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    if (upper == "ANSI_936") return "GBK";
    if (upper == "ANSI_950" || upper == "BIG5") return "CP950";
    if (upper == "ANSI_932") return "CP932";
    if (upper == "ANSI_949") return "CP949";
    if (upper == "ANSI_1361") return "JOHAB";
    if (upper == "GB2312") return "GBK";
    if (upper.starts_with("ANSI_") && upper.size() > 5) return "CP" + upper.substr(5);
    if (upper.starts_with("DOS") && upper.size() > 3) return "CP" + upper.substr(3);
    if (upper.starts_with("ISO8859-")) return "ISO-8859-" + upper.substr(8);
    return {};
}

DxfTextDecoder::DxfTextDecoder() : m_codePage(LegacyCodePage()) {}

void DxfTextDecoder::setVersion(std::string_view acadVer) {
    // AC1021 (R2007) and every later version store UTF-8.
    m_utf8 = acadVer.size() >= 6 && acadVer.substr(0, 2) == "AC" && acadVer.substr(2, 4) >= "1021";
}

void DxfTextDecoder::setCodePage(std::string_view dwgCodePage) {
    const std::string name = IconvNameOfDwgCodePage(dwgCodePage);
    if (name.empty() || !DecodeCodePage("A", name)) return;
    m_codePage = name;
}

std::u16string DxfTextDecoder::decodeBytes(std::string_view bytes) const {
    if (isAscii(bytes)) return std::u16string(bytes.begin(), bytes.end());
    if (m_utf8) return Utf8ToUtf16(bytes);
    if (auto decoded = DecodeCodePage(bytes, m_codePage)) return *decoded;
    return Utf8ToUtf16(bytes);
}

CString DxfTextDecoder::decode(std::string_view bytes) const {
    // Carets go first: a caret that an escape such as \U+005E stands for is text, not notation.
    if (m_utf8) return CString(decodeCarets(decodeBytes(bytes)));
    return CString(decodeEscapes(decodeCarets(decodeBytes(bytes))));
}
