// Escaping of control characters for the terminal.
#include "support/PrintableText.h"

namespace {

bool isControl(char16_t ch) { return ch < 0x20 || (ch >= 0x7F && ch <= 0x9F); }

} // namespace

CString QxPrintable(const CString& text, QxLineBreaks lineBreaks) {
    if (!QxHasControlCharacter(text)) return text;
    static constexpr char16_t kHex[] = u"0123456789abcdef";
    std::u16string shown;
    shown.reserve(text.str().size() + 8);
    for (const char16_t ch : text.str()) {
        if (!isControl(ch) || (ch == u'\n' && lineBreaks == QxLineBreaks::Keep)) {
            shown += ch;
            continue;
        }
        shown += u"\\x";
        shown += kHex[(ch >> 4) & 0xF];
        shown += kHex[ch & 0xF];
    }
    return CString(std::move(shown));
}

bool QxHasControlCharacter(const CString& text) {
    for (const char16_t ch : text.str())
        if (isControl(ch)) return true;
    return false;
}
