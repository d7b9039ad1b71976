// The project's own text files read back as written, and UTF-8 files of other tools read as UTF-8, although
// many legacy byte strings are valid UTF-8 too.
#include "common/TempFolder.h"
#include "support/Encoding.h"
#include "support/TextFile.h"
#include "support/TextPlausibility.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct LegacyChar {
    std::u16string text;
    std::string bytes;
};

// GB2312 level 1, the common Chinese characters: rows B0 to D7, the last row ending at F9.
std::vector<LegacyChar> commonHanzi() {
    std::vector<LegacyChar> chars;
    for (unsigned row = 0xB0; row <= 0xD7; ++row) {
        for (unsigned cell = 0xA1; cell <= (row == 0xD7 ? 0xF9u : 0xFEu); ++cell) {
            const std::string gb{static_cast<char>(row), static_cast<char>(cell)};
            const std::u16string text = DecodeLegacy(gb);
            chars.push_back({text, EncodeLegacy(text)});
        }
    }
    return chars;
}

} // namespace

// A name of two common characters is valid UTF-8 for one pair in thirty (原图 reads as "ԭͼ"). Each such pair is
// tried once: bare, or in one of the surroundings a name meets in a file, taken in turn. The writer's code page
// keeps no state, so a name's bytes are those of its parts one after the other.
TEST(TextFileReading, EveryPairOfCommonChineseCharactersReadsBackAsWritten) {
    const std::vector<LegacyChar> chars = commonHanzi();
    ASSERT_EQ(chars.size(), 3755u);
    for (const LegacyChar& c : chars) {
        ASSERT_TRUE(IsCommonHanzi(c.text[0])) << Utf16ToUtf8(c.text);
        ASSERT_EQ(c.bytes.size(), 2u);
    }

    std::vector<std::pair<LegacyChar, LegacyChar>> surroundings;
    for (const auto& [before, after] : std::vector<std::pair<std::u16string, std::u16string>>{
             {u"", u""}, {u"\\home\\ann\\My Projects\\", u".itm"}, {u"K01", u""}, {u"AH1 ", u"柜"}, {u"10kV", u"，"},
             {u"", u"-2"}, {u"A", u"B"}, {u"GGD ", u" 800×600"}})
        surroundings.push_back({{before, EncodeLegacy(before)}, {after, EncodeLegacy(after)}});
    ASSERT_EQ(EncodeLegacy(u"AH1 原图柜"), surroundings[3].first.bytes + EncodeLegacy(u"原图") + surroundings[3].second.bytes);

    size_t ambiguous = 0;
    size_t failures = 0;
    const auto check = [&](const std::u16string& name, const std::string& bytes) {
        const std::u16string read = DecodeTextFile(bytes);
        if (read != name && ++failures <= 20) ADD_FAILURE() << Utf16ToUtf8(name) << " read as " << Utf16ToUtf8(read);
    };
    for (const LegacyChar& a : chars) {
        // UTF-8 begins with an ASCII byte or a lead byte, C2 to F4: names beginning otherwise cannot be taken
        // for it, nor can other bytes that are not UTF-8. Only the others need a look.
        const auto first = static_cast<unsigned char>(a.bytes[0]);
        if (first < 0xC2 || first > 0xF4) continue;
        char pair[4] = {a.bytes[0], a.bytes[1], 0, 0};
        for (const LegacyChar& b : chars) {
            pair[2] = b.bytes[0];
            pair[3] = b.bytes[1];
            if (!IsValidUtf8(std::string_view(pair, 4))) continue;
            const auto& [before, after] = surroundings[ambiguous++ % surroundings.size()];
            check(before.text + a.text + b.text + after.text, before.bytes + std::string(pair, 4) + after.bytes);
        }
    }
    EXPECT_GT(ambiguous, 400000u);
    EXPECT_EQ(failures, 0u);
}

TEST(TextFileReading, NamesOfLatinLettersDigitsAndSymbolsReadBackAsWritten) {
    for (const char16_t* name : {u"AH1", u"KYN28-12(Z)", u"GCS_01.prj", u"800*600*2200", u"±5% 10kV ℃",
                                 u"①②③ Ⅰ段 Ⅱ段", u"（备用）【A】", u"α β Ω", u"φ25 mm²", u"ā á ǎ à ü",
                                 u"№3 ※ → ★", u"母线 I 段：3×(TMY-80×8)"}) {
        const std::u16string text = name;
        EXPECT_EQ(DecodeTextFile(EncodeLegacy(text)), text) << Utf16ToUtf8(text);
    }
}

TEST(TextFileReading, Utf8OfOtherToolsStillReadsAsUtf8) {
    for (const char16_t* name : {u"中文说明", u"柜", u"原图", u"开关柜 KYN28-12，柜宽 800", u"café crème", u"Größe",
                                 u"Müller GmbH", u"naïve résumé", u"ÉCOLE", u"Ærøskøbing", u"Привет мир", u"Ελληνικά",
                                 u"日本語のテキスト", u"한국어", u"emoji 😀", u"项目 Größe café"}) {
        const std::u16string text = name;
        EXPECT_EQ(DecodeTextFile(Utf16ToUtf8(text)), text) << Utf16ToUtf8(text);
    }
    // A byte-order mark says UTF-8, whatever the bytes behind it look like.
    EXPECT_EQ(DecodeTextFile("\xEF\xBB\xBF" + EncodeLegacy(u"原图")), u"ԭͼ");
}
