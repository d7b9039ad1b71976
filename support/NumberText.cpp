// Numbers in text, independent of the locale.
#include "support/NumberText.h"

#include <charconv>
#include <climits>
#include <string>

int QxToInt(const CString& text) {
    const std::u16string& s = text.str();
    size_t i = 0;
    while (i < s.size() && (IsQxBlank(s[i]))) ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) negative = s[i++] == u'-';
    long long value = 0;
    for (; i < s.size() && s[i] >= u'0' && s[i] <= u'9'; ++i) {
        value = value * 10 + (s[i] - u'0');
        if (value > static_cast<long long>(INT_MAX) + 1) break;
    }
    if (negative) value = -value;
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}

double QxToDouble(const CString& text) {
    const std::u16string& s = text.str();
    size_t i = 0;
    while (i < s.size() && IsQxBlank(s[i])) ++i;
    std::string ascii;
    for (; i < s.size() && s[i] < 128; ++i) ascii += static_cast<char>(s[i]);
    size_t start = 0;
    if (!ascii.empty() && ascii[0] == '+') start = 1;
    double value = 0.0;
    const auto [ptr, ec] = std::from_chars(ascii.data() + start, ascii.data() + ascii.size(), value);
    (void)ptr;
    if (ec == std::errc::result_out_of_range) return value;
    return ec == std::errc() ? value : 0.0;
}
