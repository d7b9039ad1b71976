// Cleaning MText of format codes: the paragraph step, the positions of codes and semicolons taken from
// last to first, braces and trimming.
#include "drawing/bom/MTextCleaner.h"

#include <gtest/gtest.h>

TEST(MTextCleanerTest, FormatCodesGoWithTheirArguments) {
    EXPECT_EQ(QxCleanMText(u"{\\fA|b0;型号}"), u"型号");
    EXPECT_EQ(QxCleanMText(u"\\A1;12"), u"12");
    EXPECT_EQ(QxCleanMText(u"{\\fSimSun|b0|i0;\\H2.5;断路器}"), u"断路器");
    // A semicolon after a semicolon goes alone; the code before both takes the first with it.
    EXPECT_EQ(QxCleanMText(u"\\A1;x;y"), u"xy");
    // A code without arguments loses its two characters only.
    EXPECT_EQ(QxCleanMText(u"\\Lunder\\l line"), u"under line");
    EXPECT_EQ(QxCleanMText(u"a\\{b\\}c"), u"abc");
    EXPECT_EQ(QxCleanMText(u"{\\H2; x }"), u"x");
    CGetTextFromMText cleaner;
    EXPECT_EQ(cleaner.GetText(u"\\pxqc;居中"), u"居中");
}

TEST(MTextCleanerTest, TextWithoutBackslashStaysWhole) {
    EXPECT_EQ(QxCleanMText(u"a;b"), u"a;b");
    EXPECT_EQ(QxCleanMText(u"{a}"), u"{a}");
    EXPECT_EQ(QxCleanMText(u"  x  "), u"  x  ");
    EXPECT_EQ(QxCleanMText(u" "), u" ");
    EXPECT_EQ(QxCleanMText(u""), u"");
    // Paragraph breaks go first, so what remains may hold no backslash and keep its semicolons.
    EXPECT_EQ(QxCleanMText(u"a\\Pb;c"), u"ab;c");
    EXPECT_EQ(QxCleanMText(u"1\\P2\\P"), u"12");
}

TEST(MTextCleanerTest, LeadingSemicolonKeepsParagraphsForTheScan) {
    EXPECT_EQ(QxCleanMText(u";\\A1;abc"), u";abc");
    // Kept by the first step, the paragraph code then swallows everything up to the next semicolon.
    EXPECT_EQ(QxCleanMText(u";a\\Pb;c"), u";ac");
}

TEST(MTextCleanerTest, OtherBackslashesArePlainText) {
    EXPECT_EQ(QxCleanMText(u"\\Uxyz"), u"\\Uxyz");
    EXPECT_EQ(QxCleanMText(u"\\U+221A\\H2;x"), u"\\U+221Ax");
    EXPECT_EQ(QxCleanMText(u"abc\\"), u"abc\\");
    EXPECT_EQ(QxCleanMText(u"\\H2;ab\\"), u"ab\\");
    EXPECT_EQ(QxCleanMText(u"a\\\\Hb"), u"a\\b");
    // A semicolon before any code stays; a code behind it is dropped on its own.
    EXPECT_EQ(QxCleanMText(u"a;b\\Hc"), u"a;bc");
}

TEST(MTextCleanerTest, UnbalancedBracesAndCodesAtTheEnd) {
    EXPECT_EQ(QxCleanMText(u"{\\H2;x"), u"x");
    EXPECT_EQ(QxCleanMText(u"\\H2;x}}"), u"x");
    EXPECT_EQ(QxCleanMText(u"x\\H"), u"x");
    EXPECT_EQ(QxCleanMText(u"\\"), u"\\");
    EXPECT_EQ(QxCleanMText(u";;\\"), u";\\");
}
