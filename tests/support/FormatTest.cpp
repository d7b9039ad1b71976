#include "support/Format.h"

#include <gtest/gtest.h>

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
