#include "support/Format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

TEST(Format, TextAndIntegerDirectives) {
    EXPECT_EQ(QxFormat(u"项目%s更新完毕！\n", CString(u"甲")), CString(u"项目甲更新完毕！\n"));
    EXPECT_EQ(QxFormat(u"%d,%2.2d,%2.2d", 2015, 3, 12), CString(u"2015,03,12"));
    EXPECT_EQ(QxFormat(u"Unknown error 0x%0lX", 0x80004003LL), CString(u"Unknown error 0x80004003"));
    EXPECT_EQ(QxFormat(u"%d.%d.%d.%d", 127, 0, 0, 1), CString(u"127.0.0.1"));
    EXPECT_EQ(QxFormat(u"%5d|%-3d|%03d", 42, 7, -5), CString(u"   42|7  |-05"));
}

TEST(Format, DoublesIgnoreTheLocale) {
    EXPECT_EQ(QxFormat(u"%.2f", 6.2), CString(u"6.20"));
    EXPECT_EQ(QxFormat(u"%.2f", -0.005), CString(u"-0.01"));
    EXPECT_EQ(QxFormat(u"%f", 2.5), CString(u"2.500000"));
}

TEST(Format, QuirksOfTheMessageFormatsAreKept) {
    // The mismatch message of the XML text class writes '.50%s': ".50" stays as text.
    EXPECT_EQ(QxFormat(u"'%.50s' vs '.50%s'", CString(u"a"), CString(u"b")), CString(u"'a' vs '.50b'"));
    EXPECT_EQ(QxFormat(u"%.3s", CString(u"abcdef")), CString(u"abc"));
    EXPECT_EQ(QxFormat(u"100%% %q"), CString(u"100% %q"));
    EXPECT_EQ(QxFormat(u"%s and %s", CString(u"one")), CString(u"one and "));
}

TEST(Format, DoublesGivenForIntegersAreCutAndHeldInRange) {
    EXPECT_EQ(QxFormat(u"%d|%d|%d", 2.9, -2.9, 0.0), CString(u"2|-2|0"));
    EXPECT_EQ(QxFormat(u"%d", std::nan("")), CString(u"0"));
    EXPECT_EQ(QxFormat(u"%d|%d", 1e300, HUGE_VAL), CString(u"9223372036854775807|9223372036854775807"));
    EXPECT_EQ(QxFormat(u"%d|%d", -1e300, -HUGE_VAL), CString(u"-9223372036854775808|-9223372036854775808"));
    // The same for widths and precisions given as arguments.
    EXPECT_EQ(QxFormat(u"[%*d]", std::nan(""), 5), CString(u"[5]"));
    EXPECT_EQ(QxFormat(u"[%.*s]", -1e300, CString(u"abc")), CString(u"[abc]"));
    EXPECT_EQ(QxFormat(u"[%.*s]", 1e300, CString(u"abc")), CString(u"[abc]"));
    EXPECT_EQ(QxFormat(u"[%*d]", -4.0, 7), CString(u"[7   ]"));
}

TEST(Format, WidthsAndAddedDigitsAreCapped) {
    constexpr int cap = 4096;
    EXPECT_EQ(QxFormat(u"%*d", 2147483647LL, 1).GetLength(), cap);
    EXPECT_EQ(QxFormat(u"%*d", -9223372036854775807LL - 1, 1).GetLength(), cap);  // left-justified, no overflow
    EXPECT_EQ(QxFormat(u"%*s", 1e300, CString(u"x")).GetLength(), cap);
    EXPECT_EQ(QxFormat(u"%2147483647d", 1).GetLength(), cap);
    EXPECT_EQ(QxFormat(u"%99999999999999999999999d", 1).GetLength(), cap);
    EXPECT_EQ(QxFormat(u"%.99999999999999999999999d", 1).GetLength(), cap);
    EXPECT_EQ(QxFormat(u"%.4294967297d", 12).GetLength(), cap);  // digits that wrap around 32 bits
    // A precision that only shortens text is no allocation and stays as given.
    const CString longText(std::u16string(5000, u'a'));
    EXPECT_EQ(QxFormat(u"%.99999999999999999999s", longText), longText);
    EXPECT_EQ(QxFormat(u"%.4500s", longText).GetLength(), 4500);
}

TEST(Format, DoublesOfEveryMagnitudeMatchTheCLibrary) {
    const std::vector<std::pair<const char*, double>> cases = {
        {"%.300f", 1e300}, {"%f", -1.7976931348623157e308}, {"%.2f", 5e-324}, {"%e", 1e-300},
        {"%.3e", 6.02214076e23}, {"%g", 0.0001}, {"%.17g", 0.1}, {"%12.4f", -3.14159}, {"%-9.1f|", 2.25},
    };
    for (const auto& [format, value] : cases) {
        char expected[1024];
        std::snprintf(expected, sizeof expected, format, value);
        EXPECT_EQ(QxFormat(CString(format), value), CString(expected)) << format;
    }
}
