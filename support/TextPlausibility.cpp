// How plausible a decoded text is as this application's text.
#include "support/TextPlausibility.h"

#include "support/Encoding.h"

#include <bitset>
#include <string>

namespace {

constexpr char32_t kUnifiedFirst = 0x4E00;
constexpr char32_t kUnifiedLast = 0x9FFF;
using HanziSet = std::bitset<kUnifiedLast - kUnifiedFirst + 1>;

// The characters of GB2312 rows first..last, taken from the code page itself rather than copied here.
HanziSet hanziOfRows(unsigned char firstRow, unsigned char lastRow) {
    std::string bytes;
    for (unsigned row = firstRow; row <= lastRow; ++row) {
        for (unsigned cell = 0xA1; cell <= 0xFE; ++cell) {
            bytes += static_cast<char>(row);
            bytes += static_cast<char>(cell);
        }
    }
    HanziSet set;
    const auto text = DecodeCodePage(bytes, "GB18030");
    if (!text) return set;
    for (const char16_t ch : *text)
        if (ch >= kUnifiedFirst && ch <= kUnifiedLast) set.set(ch - kUnifiedFirst);
    return set;
}

const HanziSet& levelOneHanzi() {
    static const HanziSet set = hanziOfRows(0xB0, 0xD7);
    return set;
}

const HanziSet& levelTwoHanzi() {
    static const HanziSet set = hanziOfRows(0xD8, 0xF7);
    return set;
}

bool in(char32_t cp, char32_t first, char32_t last) { return cp >= first && cp <= last; }

bool isAsciiLetter(char32_t cp) { return in(cp, 'A', 'Z') || in(cp, 'a', 'z'); }

bool isLatinLetterWithMark(char32_t cp) { return in(cp, 0xC0, 0x24F) && cp != 0xD7 && cp != 0xF7; }

enum class Script { None, Latin, Greek, Cyrillic };

Script scriptOf(char32_t cp) {
    if (isAsciiLetter(cp) || isLatinLetterWithMark(cp)) return Script::Latin;
    if (in(cp, 0x386, 0x3FF) && cp != 0x387) return Script::Greek;
    if (in(cp, 0x400, 0x4FF)) return Script::Cyrillic;
    return Script::None;
}

enum class LetterCase { Lower, Upper, None };

// Upper case where the even code point of a pair is the capital, as in Latin Extended-A and old Cyrillic.
LetterCase caseOfPair(char32_t cp, bool oddIsUpper) {
    return ((cp % 2 == 1) == oddIsUpper) ? LetterCase::Upper : LetterCase::Lower;
}

LetterCase caseOf(char32_t cp) {
    if (in(cp, 'A', 'Z') || in(cp, 0xC0, 0xDE) || in(cp, 0x386, 0x3AB) || in(cp, 0x400, 0x42F)) return LetterCase::Upper;
    if (in(cp, 'a', 'z') || in(cp, 0xDF, 0xFF) || in(cp, 0x3AC, 0x3CE) || in(cp, 0x430, 0x45F)) return LetterCase::Lower;
    if (in(cp, 0x100, 0x17F)) {
        if (cp == 0x138 || cp == 0x149 || cp == 0x17F) return LetterCase::Lower;
        return caseOfPair(cp, in(cp, 0x139, 0x148) || in(cp, 0x179, 0x17E));
    }
    if (in(cp, 0x460, 0x481) || in(cp, 0x48A, 0x4BF) || in(cp, 0x4D0, 0x4FF)) return caseOfPair(cp, false);
    return LetterCase::None;
}

// All lower, all upper, or one capital followed by lower case; letters without case fit any shape.
bool hasOneCaseShape(std::u16string_view word) {
    bool anyUpper = false, anyLower = false, upperAfterFirst = false;
    for (size_t i = 0; i < word.size(); ++i) {
        const LetterCase c = caseOf(word[i]);
        if (c == LetterCase::Upper) {
            anyUpper = true;
            if (i > 0) upperAfterFirst = true;
        } else if (c == LetterCase::Lower) {
            anyLower = true;
        }
    }
    return !anyUpper || !anyLower || !upperAfterFirst;
}

// A word of a Latin text has most of its letters in ASCII ("café", "Größe"); one of a Greek or Cyrillic
// text is of the modern alphabet. Misread Chinese gives such runs only by rare chance.
bool isWord(std::u16string_view word, Script script) {
    if (word.size() < 3 || !hasOneCaseShape(word)) return false;
    if (script == Script::Latin) {
        size_t ascii = 0;
        for (const char16_t ch : word) ascii += isAsciiLetter(ch) ? 1 : 0;
        return ascii >= 3 && ascii > word.size() - ascii;
    }
    for (const char16_t ch : word)
        if (!(script == Script::Greek ? in(ch, 0x386, 0x3CE) : in(ch, 0x400, 0x45F))) return false;
    return true;
}

int costOf(char32_t cp, bool inWord) {
    if (cp == '\t' || cp == '\r' || cp == '\n' || in(cp, 0x20, 0x7E)) return 0;
    if (scriptOf(cp) != Script::None) return inWord ? 1 : 6;
    if (in(cp, kUnifiedFirst, kUnifiedLast)) {
        if (levelOneHanzi().test(cp - kUnifiedFirst)) return 2;
        return levelTwoHanzi().test(cp - kUnifiedFirst) ? 3 : 8;
    }
    if (in(cp, 0x3000, 0x303F) || in(cp, 0xFF01, 0xFF60) || in(cp, 0xFFE0, 0xFFE6)) return 2;
    if (in(cp, 0xA0, 0xBF) || cp == 0xD7 || cp == 0xF7 || in(cp, 0x2010, 0x205F) || in(cp, 0x2100, 0x27BF) ||
        in(cp, 0x3040, 0x312F) || in(cp, 0x3200, 0x33FF))
        return 3;
    if (in(cp, 0x3400, 0x4DBF) || cp > 0xFFFF) return 8;
    if (cp < 0x20 || in(cp, 0x7F, 0x9F) || in(cp, 0x250, 0x36F) || in(cp, 0xD800, 0xF8FF) || cp >= 0xFFF0) return 12;
    return 6;
}

bool isSurrogatePair(std::u16string_view text, size_t i) {
    return in(text[i], 0xD800, 0xDBFF) && i + 1 < text.size() && in(text[i + 1], 0xDC00, 0xDFFF);
}

} // namespace

bool IsCommonHanzi(char16_t ch) { return in(ch, kUnifiedFirst, kUnifiedLast) && levelOneHanzi().test(ch - kUnifiedFirst); }

long long TextImplausibility(std::u16string_view text) {
    // The letters of words are all in the Basic Multilingual Plane, so the text is walked in code units.
    long long cost = 0;
    for (size_t i = 0; i < text.size();) {
        const Script script = scriptOf(text[i]);
        if (script == Script::None) {
            const bool pair = isSurrogatePair(text, i);
            cost += costOf(pair ? 0x10000 : text[i], false);
            i += pair ? 2 : 1;
            continue;
        }
        size_t end = i;
        while (end < text.size() && scriptOf(text[end]) == script) ++end;
        const std::u16string_view word = text.substr(i, end - i);
        const bool inWord = isWord(word, script);
        for (const char16_t ch : word) cost += costOf(ch, inWord);
        i = end;
    }
    return cost;
}
