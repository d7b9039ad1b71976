#include "common/TempFolder.h"
#include "support/Encoding.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <gtest/gtest.h>

namespace {
const std::string kGbkProject = "\xCF\xEE\xC4\xBF";  // 项目 in GBK
}

TEST(Encoding, ChineseSurvivesUtf8AndLegacyRoundTrips) {
    const std::u16string text = u"柜编号 K01，√ 😀";
    EXPECT_EQ(Utf8ToUtf16(Utf16ToUtf8(text)), text);
    EXPECT_EQ(DecodeLegacy(EncodeLegacy(text)), text);  // GB18030 holds every character
    EXPECT_EQ(EncodeLegacy(u"项目"), kGbkProject);
}

TEST(Encoding, MalformedBytesBecomeReplacementCharactersNotCrashes) {
    EXPECT_EQ(Utf8ToUtf16("a\xC3"), std::u16string(u"a\uFFFD"));
    EXPECT_EQ(Utf8ToUtf16("\xED\xA0\x80"), std::u16string(u"\uFFFD\uFFFD\uFFFD"));  // encoded surrogate
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));  // overlong
    const std::u16string decoded = DecodeLegacy("ok\x81");  // truncated two-byte sequence
    EXPECT_EQ(decoded.substr(0, 2), u"ok");
    EXPECT_EQ(decoded.back(), u'\uFFFD');
}

TEST(Encoding, UnknownCodePageIsReportedAsAbsent) {
    EXPECT_FALSE(DecodeCodePage("abc", "NO-SUCH-CODEPAGE").has_value());
}

TEST(TextFileReading, WholeFileUtf8ElseLegacy) {
    EXPECT_EQ(DecodeTextFile("\xEF\xBB\xBF项目"), std::u16string(u"项目"));
    EXPECT_EQ(DecodeTextFile(kGbkProject), std::u16string(u"项目"));
    // "说明" in GBK is CBB5 C3F7: its first character reads as valid UTF-8, the whole does not.
    EXPECT_EQ(DecodeTextFile("\xCB\xB5\xC3\xF7"), std::u16string(u"说明"));
}

TEST(TextFileReading, LineEndsAreNeverPartOfALine) {
    TempFolder dir;
    dir.writeFile("crlf.txt", "one\r\ntwo\r\n\r\nfour");
    dir.writeFile("lf.txt", "one\ntwo\n");
    CStringArray lines;
    ASSERT_TRUE(ReadTextLines(dir.logic() + u"crlf.txt", lines));
    ASSERT_EQ(lines.GetSize(), 4);
    EXPECT_EQ(lines[1], CString(u"two"));
    EXPECT_EQ(lines[2], CString());
    ASSERT_TRUE(ReadTextLines(dir.logic() + u"lf.txt", lines));
    EXPECT_EQ(lines.GetSize(), 2);
}

TEST(TextFileWriting, LegacyCodePageWithCrLf) {
    TempFolder dir;
    const CStringArray lines({u"项目", u"b"});
    ASSERT_TRUE(WriteFileLines(dir.logic() + u"out.txt", lines));
    EXPECT_EQ(dir.readFile("out.txt"), kGbkProject + "\r\nb\r\n");
}
