// Display width through the C library's wcwidth, in a UTF-8 locale of its own so that the program's
// locale does not matter.
#include "support/DisplayWidth.h"

#include <clocale>
#include <cwchar>
#include <locale.h>

namespace {

// Code points of a UTF-16 text; a lone surrogate stands for itself (it is shown as one replacement mark).
template <typename Visit>
void forEachCodePoint(const std::u16string& text, Visit visit) {
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t cp = text[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
            if (!visit(cp, i, 2)) return;
            ++i;
            continue;
        }
        if (!visit(cp, i, 1)) return;
    }
}

// Sets a UTF-8 character type for this thread while it lives; wcwidth answers -1 for anything beyond
// ASCII in the "C" locale.
class Utf8CharacterType {
public:
    Utf8CharacterType() {
        static const locale_t utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        if (utf8) m_previous = ::uselocale(utf8);
    }
    ~Utf8CharacterType() {
        if (m_previous) ::uselocale(m_previous);
    }
    Utf8CharacterType(const Utf8CharacterType&) = delete;
    Utf8CharacterType& operator=(const Utf8CharacterType&) = delete;

private:
    locale_t m_previous = nullptr;
};

int columnsOf(char32_t cp) {
    const int width = ::wcwidth(static_cast<wchar_t>(cp));
    return width < 0 ? 1 : width;
}

} // namespace

int QxDisplayWidth(const CString& text) {
    const Utf8CharacterType utf8;
    int width = 0;
    forEachCodePoint(text.str(), [&](char32_t cp, size_t, size_t) {
        width += columnsOf(cp);
        return true;
    });
    return width;
}

CString QxFitToWidth(const CString& text, int width) {
    if (width <= 0) return CString();
    const int full = QxDisplayWidth(text);
    if (full <= width) return text + CString(u' ', width - full);
    const Utf8CharacterType utf8;
    const int room = width - 1;  // one column for the ellipsis
    int used = 0;
    size_t end = 0;
    forEachCodePoint(text.str(), [&](char32_t cp, size_t at, size_t units) {
        const int columns = columnsOf(cp);
        if (used + columns > room) return false;
        used += columns;
        end = at + units;
        return true;
    });
    return CString(text.str().substr(0, end)) + u"…" + CString(u' ', room - used);
}
