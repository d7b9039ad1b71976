#include "support/NumberText.h"
#include "support/TextHelpers.h"

#include <gtest/gtest.h>

TEST(SplitString, KSeparatorsGiveKPlusOneParts) {
    CStringArray parts;
    EXPECT_TRUE(SplitString(u"a,,b,", u",", parts));
    ASSERT_EQ(parts.GetSize(), 4);
    EXPECT_EQ(parts[1], CString());
    EXPECT_EQ(parts[3], CString());
    SplitString(u"", u",", parts);
    EXPECT_EQ(parts.GetSize(), 1);
    SplitString(u"a·b", u"", parts);
    ASSERT_EQ(parts.GetSize(), 1);
    EXPECT_EQ(parts[0], CString(u"a·b"));
    SplitString(u"ent·user·pw·host:8585", u"·", parts);
    ASSERT_EQ(parts.GetSize(), 4);
    EXPECT_EQ(parts[3], CString(u"host:8585"));
}

TEST(IsDigitString, OnlyDecimalDigits) {
    EXPECT_TRUE(IsDigitString(u"0123"));
    EXPECT_FALSE(IsDigitString(u""));
    EXPECT_FALSE(IsDigitString(u"-1"));
    EXPECT_FALSE(IsDigitString(u"2.5"));
    EXPECT_FALSE(IsDigitString(u" 1"));
    EXPECT_FALSE(IsDigitString(u"１"));  // full-width digit
}

TEST(ReplaceRootSign, ReplacesEveryEscapeAndNothingElse) {
    CString out;
    ReplaceRootSign(u"3\\U+221A3/\\U+221A2", out);
    EXPECT_EQ(out, CString(u"3√3/√2"));
    ReplaceRootSign(u"\\U+221", out);
    EXPECT_EQ(out, CString(u"\\U+221"));
}

TEST(NumberText, ReadsLeadingNumbersAsTheCRunTimeDoes) {
    EXPECT_EQ(QxToInt(u"12abc"), 12);
    EXPECT_EQ(QxToInt(u"abc"), 0);
    EXPECT_EQ(QxToInt(u"  -7"), -7);
    EXPECT_EQ(QxToInt(u"99999999999"), 2147483647);
    EXPECT_DOUBLE_EQ(QxToDouble(u" 2.5mm"), 2.5);
    EXPECT_DOUBLE_EQ(QxToDouble(u"-1e2"), -100.0);
    EXPECT_DOUBLE_EQ(QxToDouble(u"x1"), 0.0);
}
