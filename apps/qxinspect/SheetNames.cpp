// Sheet names that Excel opens without repair.
#include "SheetNames.h"

#include "support/FileSystem.h"

#include <cwctype>
#include <locale.h>

namespace {

constexpr size_t kLongestName = 31;  // UTF-16 units

bool isHighSurrogate(char16_t ch) { return ch >= 0xD800 && ch <= 0xDBFF; }

// Excel compares names ignoring case beyond ASCII ("Ärger" and "ärger" collide): full Unicode upper case.
std::u32string folded(const std::u16string& name) {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    std::u32string out;
    for (size_t i = 0; i < name.size(); ++i) {
        char32_t ch = name[i];
        if (isHighSurrogate(name[i]) && i + 1 < name.size()) ch = 0x10000 + ((ch - 0xD800) << 10) + (name[++i] - 0xDC00);
        // Without the Unicode locale, the file-system boundary's folding (Latin-1, Greek, Cyrillic, full width).
        out += unicode ? static_cast<char32_t>(::towupper_l(static_cast<wint_t>(ch), unicode))
              : ch <= 0xFFFF ? static_cast<char32_t>(QxFs::FoldNameChar(static_cast<char16_t>(ch)))
                             : ch;
    }
    return out;
}

void trimApostrophes(std::u16string& name) {
    while (!name.empty() && name.front() == u'\'') name.erase(name.begin());
    while (!name.empty() && name.back() == u'\'') name.pop_back();
}

// At most `units` UTF-16 units, never half of a surrogate pair, and no apostrophe left at the end.
std::u16string cut(std::u16string name, size_t units) {
    if (name.size() > units) {
        name.resize(units);
        if (!name.empty() && isHighSurrogate(name.back())) name.pop_back();
    }
    trimApostrophes(name);
    return name.empty() ? std::u16string(u"Device") : name;
}

} // namespace

std::string CSheetNames::Take(const CString& wanted) {
    std::u16string base;
    for (const char16_t ch : wanted.str()) base += CString(u"[]:*?/\\").Find(ch) >= 0 || ch < 0x20 ? u'_' : ch;
    trimApostrophes(base);
    if (base.empty()) base = u"Device";
    static const std::u32string reserved = folded(u"History");
    for (int n = 1;; ++n) {
        const std::u16string suffix = n == 1 ? u"" : u" (" + CString(std::to_string(n)).str() + u")";
        const std::u16string name = cut(base, kLongestName - suffix.size()) + suffix;
        const std::u32string key = folded(name);
        if (key == reserved || !m_taken.insert(key).second) continue;
        return CString(name).ToUtf8();
    }
}
