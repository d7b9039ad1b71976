#include "support/Format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

TEST(Format, DirectivesOfTheMessagesAndTheirQuirks) {
    const struct { const char* what; CString got; CString expected; } rows[] = {
        {"text", QxFormat(u"项目%s更新完毕！\n", CString(u"甲")), u"项目甲更新完毕！\n"},
        {"integers with a precision", QxFormat(u"%d,%2.2d,%2.2d", 2015, 3, 12), u"2015,03,12"},
        {"a long hexadecimal", QxFormat(u"Unknown error 0x%0lX", 0x80004003LL), u"Unknown error 0x80004003"},
        {"widths, left and zero-padded", QxFormat(u"%5d|%-3d|%03d", 42, 7, -5), u"   42|7  |-05"},
        {"doubles round half away", QxFormat(u"%.2f|%.2f|%f", 6.2, -0.005, 2.5), u"6.20|-0.01|2.500000"},
        // The mismatch message of the XML text class writes '.50%s': ".50" stays as text.
        {"a stray precision is text", QxFormat(u"'%.50s' vs '.50%s'", CString(u"a"), CString(u"b")), u"'a' vs '.50b'"},
        {"a precision cuts text", QxFormat(u"%.3s", CString(u"abcdef")), u"abc"},
        {"%% and unknown directives", QxFormat(u"100%% %q"), u"100% %q"},
        {"a missing argument is empty", QxFormat(u"%s and %s", CString(u"one")), u"one and "},
        // Doubles given for integers are cut and held in range, also as widths and precisions.
        {"doubles cut to integers", QxFormat(u"%d|%d|%d|%d", 2.9, -2.9, 0.0, std::nan("")), u"2|-2|0|0"},
        {"held at the top", QxFormat(u"%d|%d", 1e300, HUGE_VAL), u"9223372036854775807|9223372036854775807"},
        {"held at the bottom", QxFormat(u"%d|%d", -1e300, -HUGE_VAL), u"-9223372036854775808|-9223372036854775808"},
        {"a NaN width", QxFormat(u"[%*d]", std::nan(""), 5), u"[5]"},
        {"a huge negative precision", QxFormat(u"[%.*s]", -1e300, CString(u"abc")), u"[abc]"},
        {"a huge precision", QxFormat(u"[%.*s]", 1e300, CString(u"abc")), u"[abc]"},
        {"a negative width justifies left", QxFormat(u"[%*d]", -4.0, 7), u"[7   ]"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.got, row.expected) << row.what;
}

TEST(Format, WidthsAndAddedDigitsAreCapped) {
    constexpr int cap = 4096;
    const CString capped[] = {
        QxFormat(u"%*d", 2147483647LL, 1),
        QxFormat(u"%*d", -9223372036854775807LL - 1, 1),  // left-justified, no overflow
        QxFormat(u"%*s", 1e300, CString(u"x")),
        QxFormat(u"%2147483647d", 1),
        QxFormat(u"%99999999999999999999999d", 1),
        QxFormat(u"%.99999999999999999999999d", 1),
        QxFormat(u"%.4294967297d", 12),  // digits that wrap around 32 bits
    };
    for (const CString& text : capped) EXPECT_EQ(text.GetLength(), cap);
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
