// Cleaning MText of its format codes.
#include "drawing/bom/MTextCleaner.h"

#include <vector>

namespace {

// The letters that make a backslash a format code; any other backslash is plain text.
bool isFormatLetter(char16_t ch) {
    static constexpr std::u16string_view kLetters = u"Ff~OoLlCHWQTPpSA{}";
    return kLetters.find(ch) != std::u16string_view::npos;
}

std::vector<CGetTextFromMText::TypeSpecialSymbPos> findSpecialSymbols(const CString& text) {
    std::vector<CGetTextFromMText::TypeSpecialSymbPos> positions;
    const std::u16string& chars = text.str();
    for (size_t i = 0; i < chars.size(); ++i) {
        if (chars[i] == u';') positions.push_back({static_cast<int>(i), CGetTextFromMText::kSemicolon});
        else if (chars[i] == u'\\' && i + 1 < chars.size() && isFormatLetter(chars[i + 1]))
            positions.push_back({static_cast<int>(i), CGetTextFromMText::kFormatCode});
    }
    return positions;
}

} // namespace

CString CGetTextFromMText::GetText(CString text) const {
    if (!text.IsEmpty() && text[0] != u';') text.Replace(u"\\P", u"");
    if (text.Find(u'\\') < 0) return text;
    const std::vector<TypeSpecialSymbPos> positions = findSpecialSymbols(text);
    if (positions.empty()) return text;

    // The positions are taken from last to first. A deletion only touches characters at or behind the
    // position being handled, so every earlier position still names its original character: marking
    // what goes and copying the rest once gives the same text as deleting step by step, in linear time.
    std::vector<bool> deleted(static_cast<size_t>(text.GetLength()), false);
    auto drop = [&deleted](int from, int through) {
        for (int i = from; i <= through && i < static_cast<int>(deleted.size()); ++i) deleted[static_cast<size_t>(i)] = true;
    };
    for (size_t k = positions.size(); k-- > 0;) {
        const TypeSpecialSymbPos& here = positions[k];
        if (here.Kind == kFormatCode) {
            drop(here.Pos, here.Pos + 1);
            continue;
        }
        if (k == 0) continue;  // a semicolon before any format code stays
        const TypeSpecialSymbPos& before = positions[k - 1];
        if (before.Kind == kSemicolon) {
            drop(here.Pos, here.Pos);
            continue;
        }
        drop(before.Pos, here.Pos);
        --k;  // the format code went with its arguments
    }

    std::u16string kept;
    kept.reserve(deleted.size());
    const std::u16string& chars = text.str();
    for (size_t i = 0; i < chars.size(); ++i)
        if (!deleted[i] && chars[i] != u'{' && chars[i] != u'}') kept.push_back(chars[i]);
    CString cleaned(std::move(kept));
    cleaned.Trim();
    return cleaned;
}

CString QxCleanMText(CString text) {
    return CGetTextFromMText().GetText(std::move(text));
}
