// Like patterns and names as the host's database provider compares them.
#include "support/database/AccessConditions.h"

#include "support/FileSystem.h"
#include "support/database/FieldText.h"

namespace {

// Access compares text by its sort order, which folds case beyond ASCII; the file-system boundary folds the
// same letters.
char16_t fold(char16_t ch) { return QxFs::FoldNameChar(ch); }

std::u16string folded(const CString& text) {
    std::u16string out = text.str();
    for (char16_t& ch : out) ch = fold(ch);
    return out;
}

} // namespace

bool LikeMatches(const CString& text, const CString& pattern) {
    const std::u16string s = folded(text);
    const std::u16string p = folded(pattern);
    // Greedy match with one back-track point: the last % seen.
    size_t si = 0, pi = 0;
    size_t starP = std::u16string::npos, starS = 0;
    while (si < s.size()) {
        if (pi < p.size() && (p[pi] == u'_' || (p[pi] != u'%' && p[pi] == s[si]))) {
            ++si;
            ++pi;
        } else if (pi < p.size() && p[pi] == u'%') {
            starP = pi++;
            starS = si;
        } else if (starP != std::u16string::npos) {
            pi = starP + 1;
            si = ++starS;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == u'%') ++pi;
    return pi == p.size();
}

std::optional<CString> QuotedValueText(const CString& value) {
    const std::u16string& text = value.str();
    std::u16string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'"') {
            if (i + 1 >= text.size() || text[i + 1] != u'"') return std::nullopt;
            ++i;
        }
        out += text[i];
    }
    return CString(std::move(out));
}

bool SameDbName(const CString& a, const CString& b) { return folded(a) == folded(b); }

bool ValueIsLike(const DbValue& value, const CString& pattern) {
    if (value.type == DbValue::Type::Null) return false;
    return LikeMatches(FieldText(value), pattern);
}

bool ValueOrdersBefore(const DbValue& a, const DbValue& b) {
    const bool aNull = a.type == DbValue::Type::Null;
    const bool bNull = b.type == DbValue::Type::Null;
    if (aNull || bNull) return aNull && !bNull;
    const bool aText = a.type == DbValue::Type::Text;
    const bool bText = b.type == DbValue::Type::Text;
    if (!aText && !bText) {
        const double x = a.type == DbValue::Type::Integer ? static_cast<double>(a.integer) : a.real;
        const double y = b.type == DbValue::Type::Integer ? static_cast<double>(b.integer) : b.real;
        return x < y;
    }
    return folded(FieldText(a)) < folded(FieldText(b));
}
