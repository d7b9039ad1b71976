// CQxXmlTextDoc::UnescapeText: character references to characters.
#include "exchange/text/EntityTable.h"
#include "exchange/text/QxXmlTextDoc.h"

#include <string>

namespace {

// A key is at most this long: "&" + 9 characters + ";".
constexpr size_t kMaxKeyLength = 9;

// The value of the leading digits of `digits` in the base; 0 when there are none or the value does not
// fit one code unit.
int readNumber(std::u16string_view digits, int base) {
    long value = 0;
    for (char16_t ch : digits) {
        int digit;
        if (ch >= u'0' && ch <= u'9') digit = ch - u'0';
        else if (base == 16 && ch >= u'a' && ch <= u'f') digit = ch - u'a' + 10;
        else break;
        value = value * base + digit;
        if (value > 0xFFFF) return 0;
    }
    return static_cast<int>(value);
}

// The code a key stands for, or 0. The key is already in lower case.
int decodeKey(std::u16string_view key) {
    if (!key.starts_with(u'#')) return LookupEntityCode(key);
    if (key.size() > 1 && key[1] == u'x') return readNumber(key.substr(2), 16);
    return readNumber(key.substr(1), 10);
}

} // namespace

CString CQxXmlTextDoc::UnescapeText(const char16_t* text, int length) {
    if (!text) return CString();
    const std::u16string_view source = length < 0 ? std::u16string_view(text) : std::u16string_view(text, static_cast<size_t>(length));
    std::u16string out;
    out.reserve(source.size());
    for (size_t i = 0; i < source.size();) {
        if (source[i] != u'&') {
            out += source[i++];
            continue;
        }
        std::u16string key;
        size_t at = i + 1;
        for (; key.size() < kMaxKeyLength && at < source.size() && source[at] < 128 && source[at] != u';'; ++at) {
            const char16_t ch = source[at];
            key += (ch >= u'A' && ch <= u'Z') ? static_cast<char16_t>(ch - u'A' + u'a') : ch;
        }
        const bool terminated = at < source.size() && source[at] == u';';
        const int code = terminated ? decodeKey(key) : 0;
        if (code == 0) {
            // The reference stays as text; its characters are copied like any others.
            out += u'&';
            ++i;
            continue;
        }
        out += static_cast<char16_t>(code);
        i = at + 1;
    }
    return CString(std::move(out));
}
