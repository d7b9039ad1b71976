#include "support/NumberText.h"
#include "support/TextHelpers.h"

#include <gtest/gtest.h>
#include <vector>

TEST(SplitString, KSeparatorsGiveKPlusOneParts) {
    const struct { const char* text; const char* separator; std::vector<CString> parts; } rows[] = {
        {"a,,b,", ",", {u"a", u"", u"b", u""}},
        {"", ",", {u""}},
        {"a·b", "", {u"a·b"}},  // no separator: one part
        {"ent·user·pw·host:8585", "·", {u"ent", u"user", u"pw", u"host:8585"}},
    };
    for (const auto& row : rows) {
        CStringArray parts;
        EXPECT_TRUE(SplitString(CString::FromUtf8(row.text), CString::FromUtf8(row.separator), parts));
        EXPECT_EQ(std::vector<CString>(parts.begin(), parts.end()), row.parts) << row.text;
    }
}

TEST(TextHelpers, DigitsRootSignsAndLeadingNumbers) {
    EXPECT_TRUE(IsDigitString(u"0123"));
    for (const char16_t* text : {u"", u"-1", u"2.5", u" 1", u"１"}) EXPECT_FALSE(IsDigitString(text)) << CString(text);

    CString out;
    ReplaceRootSign(u"3\\U+221A3/\\U+221A2", out);
    EXPECT_EQ(out, CString(u"3√3/√2"));
    ReplaceRootSign(u"\\U+221", out);  // cut short: no escape
    EXPECT_EQ(out, CString(u"\\U+221"));

    // As the C run-time reads them: the leading number, clamped.
    EXPECT_EQ((std::vector<int>{QxToInt(u"12abc"), QxToInt(u"abc"), QxToInt(u"  -7"), QxToInt(u"99999999999")}),
              (std::vector<int>{12, 0, -7, 2147483647}));
    EXPECT_EQ((std::vector<double>{QxToDouble(u" 2.5mm"), QxToDouble(u"-1e2"), QxToDouble(u"x1")}),
              (std::vector<double>{2.5, -100.0, 0.0}));
}
