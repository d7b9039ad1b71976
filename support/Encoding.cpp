// Text conversions at the edges. UTF-8 is decoded by hand (it is on the hot path of the DXF reader);
// code pages go through iconv.
#include "support/Encoding.h"

#include "support/TextPlausibility.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdlib>
#include <iconv.h>

namespace {

constexpr char16_t kReplacement = 0xFFFD;

// Decodes one sequence at bytes[i]; returns its length, or 0 when it is malformed.
size_t decodeUtf8At(std::string_view bytes, size_t i, char32_t& cp) {
    const auto b0 = static_cast<unsigned char>(bytes[i]);
    if (b0 < 0x80) { cp = b0; return 1; }
    size_t len;
    char32_t min;
    if ((b0 & 0xE0) == 0xC0) { len = 2; cp = b0 & 0x1F; min = 0x80; }
    else if ((b0 & 0xF0) == 0xE0) { len = 3; cp = b0 & 0x0F; min = 0x800; }
    else if ((b0 & 0xF8) == 0xF0) { len = 4; cp = b0 & 0x07; min = 0x10000; }
    else return 0;
    if (i + len > bytes.size()) return 0;
    for (size_t k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(bytes[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (b & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return len;
}

class Iconv {
public:
    Iconv(const std::string& to, const std::string& from) : m_cd(iconv_open(to.c_str(), from.c_str())) {}
    ~Iconv() { if (ok()) iconv_close(m_cd); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    iconv_t get() const { return m_cd; }

private:
    iconv_t m_cd;
};

std::string toUtf16Le(std::u16string_view text) {
    std::string out(text.size() * 2, '\0');
    for (size_t i = 0; i < text.size(); ++i) {
        out[2 * i] = static_cast<char>(text[i] & 0xFF);
        out[2 * i + 1] = static_cast<char>(text[i] >> 8);
    }
    return out;
}

} // namespace

// Never more UTF-16 units than UTF-8 bytes: the text is written into room made at once, then cut to size.
std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out(utf8.size(), u'\0');
    size_t used = 0;
    for (size_t i = 0; i < utf8.size();) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        if (b < 0x80) { out[used++] = static_cast<char16_t>(b); ++i; continue; }
        char32_t cp = 0;
        const size_t len = decodeUtf8At(utf8, i, cp);
        if (len == 0) { out[used++] = kReplacement; ++i; continue; }
        if (cp >= 0x10000) {
            out[used++] = static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10));
            out[used++] = static_cast<char16_t>(0xDC00 + ((cp - 0x10000) & 0x3FF));
        } else {
            out[used++] = static_cast<char16_t>(cp);
        }
        i += len;
    }
    out.resize(used);
    return out;
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
    std::string out;
    out.reserve(utf16.size());
    for (size_t i = 0; i < utf16.size(); ++i) {
        char32_t cp = utf16[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = kReplacement;
        }
        if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x800) {
            out += static_cast<char>(0xC0 | (cp >> 6));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            out += static_cast<char>(0xE0 | (cp >> 12));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (cp >> 18));
            out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (cp & 0x3F));
        }
    }
    return out;
}

bool IsValidUtf8(std::string_view bytes) {
    for (size_t i = 0; i < bytes.size();) {
        if (static_cast<unsigned char>(bytes[i]) < 0x80) { ++i; continue; }
        char32_t cp = 0;
        const size_t len = decodeUtf8At(bytes, i, cp);
        if (len == 0) return false;
        i += len;
    }
    return true;
}

std::string LegacyCodePage() {
    const char* name = std::getenv("QXHM_CODEPAGE");
    return (name && *name) ? std::string(name) : std::string("GB18030");
}

std::optional<std::u16string> DecodeCodePage(std::string_view bytes, const std::string& codePage) {
    // Straight into the result, in this machine's byte order: a file is decoded whole, once.
    Iconv cd(std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE", codePage);
    if (!cd.ok()) return std::nullopt;
    // One byte never makes more than one code unit in the code pages of text, but leave room for any.
    std::u16string out(bytes.size() + 16, u'\0');
    size_t written = 0;
    char* in = const_cast<char*>(bytes.data());
    size_t inLeft = bytes.size();
    while (inLeft > 0) {
        if (out.size() - written < 8) out.resize(out.size() * 2);
        char* dst = reinterpret_cast<char*>(out.data() + written);
        size_t dstLeft = (out.size() - written) * sizeof(char16_t);
        const size_t r = iconv(cd.get(), &in, &inLeft, &dst, &dstLeft);
        written = out.size() - dstLeft / sizeof(char16_t);
        if (r != static_cast<size_t>(-1) || errno == E2BIG) continue;
        // An invalid or truncated sequence: one replacement per byte, then start afresh behind it.
        if (written == out.size()) out.resize(out.size() * 2);
        out[written++] = kReplacement;
        ++in;
        --inLeft;
        iconv(cd.get(), nullptr, nullptr, nullptr, nullptr);
    }
    out.resize(written);
    return out;
}

std::optional<std::string> EncodeCodePage(std::u16string_view text, const std::string& codePage) {
    Iconv cd(codePage, "UTF-16LE");
    if (!cd.ok()) return std::nullopt;
    std::string bytes = toUtf16Le(text);
    std::string out;
    std::string buffer(std::min<size_t>(4096, 2 * bytes.size() + 16), '\0');
    char* in = bytes.data();
    size_t inLeft = bytes.size();
    while (inLeft > 0) {
        char* dst = buffer.data();
        size_t dstLeft = buffer.size();
        const size_t r = iconv(cd.get(), &in, &inLeft, &dst, &dstLeft);
        out.append(buffer.data(), buffer.size() - dstLeft);
        if (r != static_cast<size_t>(-1)) continue;
        if (errno == E2BIG) continue;
        // A character the code page cannot hold (or a broken surrogate): skip its code unit.
        out += '?';
        const size_t skip = std::min<size_t>(2, inLeft);
        in += skip;
        inLeft -= skip;
        iconv(cd.get(), nullptr, nullptr, nullptr, nullptr);
    }
    return out;
}

std::u16string DecodeLegacy(std::string_view bytes) {
    if (auto text = DecodeCodePage(bytes, LegacyCodePage())) return *text;
    if (auto text = DecodeCodePage(bytes, "GB18030")) return *text;
    return Utf8ToUtf16(bytes);
}

std::string EncodeLegacy(std::u16string_view text) {
    if (auto bytes = EncodeCodePage(text, LegacyCodePage())) return *bytes;
    if (auto bytes = EncodeCodePage(text, "GB18030")) return *bytes;
    return Utf16ToUtf8(text);
}

std::u16string DecodeTextFile(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return Utf8ToUtf16(bytes.substr(3));
    if (!IsValidUtf8(bytes)) return DecodeLegacy(bytes);
    std::u16string utf8 = Utf8ToUtf16(bytes);
    const bool ascii = utf8.size() == bytes.size();
    if (ascii) return utf8;
    // Legacy bytes are often valid UTF-8 too: the reading that looks more like the application's text wins,
    // and a tie goes to the legacy page, in which the application writes.
    std::u16string legacy = DecodeLegacy(bytes);
    return TextImplausibility(utf8) < TextImplausibility(legacy) ? utf8 : legacy;
}
