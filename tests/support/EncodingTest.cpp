#include "common/TempFolder.h"
#include "support/Encoding.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <gtest/gtest.h>

namespace {
const std::string kGbkProject = "\xCF\xEE\xC4\xBF";  // 项目 in GBK
}

TEST(Encoding, RoundTripsAndMalformedBytes) {
    const std::u16string text = u"柜编号 K01，√ 😀";
    EXPECT_EQ(Utf8ToUtf16(Utf16ToUtf8(text)), text);
    EXPECT_EQ(DecodeLegacy(EncodeLegacy(text)), text);  // GB18030 holds every character
    EXPECT_EQ(EncodeLegacy(u"项目"), kGbkProject);
    // Malformed bytes become replacement characters, not crashes.
    EXPECT_EQ(Utf8ToUtf16("a\xC3"), std::u16string(u"a\uFFFD"));
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), std::u16string(u"\uFFFD\uFFFD\uFFFD"));  // encoded surrogate
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));  // overlong
    EXPECT_EQ(DecodeLegacy("ok\x81"), std::u16string(u"ok\uFFFD"));  // truncated two-byte sequence
    EXPECT_FALSE(DecodeCodePage("abc", "NO-SUCH-CODEPAGE").has_value());
}

TEST(TextFileReading, WholeFileUtf8ElseLegacyAndLineEndsAreNeverPartOfALine) {
    // A mark, and legacy text that is valid UTF-8, are TextReadingCorpusTest's.
    EXPECT_EQ(DecodeTextFile(kGbkProject), std::u16string(u"项目"));
    // "说明" in GBK is CBB5 C3F7: its first character reads as valid UTF-8, the whole does not.
    EXPECT_EQ(DecodeTextFile("\xCB\xB5\xC3\xF7"), std::u16string(u"说明"));

    TempFolder dir;
    dir.writeFile("crlf.txt", "one\r\ntwo\r\n\r\nfour");
    dir.writeFile("lf.txt", "one\ntwo\n");
    CStringArray lines;
    ASSERT_TRUE(ReadTextLines(dir.logic() + u"crlf.txt", lines));
    EXPECT_EQ(lines, CStringArray({u"one", u"two", u"", u"four"}));
    ASSERT_TRUE(ReadTextLines(dir.logic() + u"lf.txt", lines));
    EXPECT_EQ(lines, CStringArray({u"one", u"two"}));
}

TEST(TextFileWriting, LegacyCodePageWithCrLf) {
    TempFolder dir;
    ASSERT_TRUE(WriteFileLines(dir.logic() + u"out.txt", CStringArray({u"项目", u"b"})));
    EXPECT_EQ(dir.readFile("out.txt"), kGbkProject + "\r\nb\r\n");
}
