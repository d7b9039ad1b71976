// Cleaning MText of format codes: the positions of codes and semicolons taken from last to first, and
// backslashes at the end. The BOM table, title block and reader fixture tests read cleaned cells whole.
#include "drawing/bom/MTextCleaner.h"

#include <gtest/gtest.h>

TEST(MTextCleanerTest, FormatCodesGoWithTheirArguments) {
    // A code without arguments loses its two characters only.
    EXPECT_EQ(QxCleanMText(u"\\Lunder\\l line"), u"under line");
    EXPECT_EQ(QxCleanMText(u"{\\H2; x }"), u"x");
    // A leading semicolon keeps the paragraph code for the scan, which then swallows everything up to the
    // next semicolon.
    EXPECT_EQ(QxCleanMText(u";a\\Pb;c"), u";ac");
}

TEST(MTextCleanerTest, BackslashesAtTheEndStayText) {
    EXPECT_EQ(QxCleanMText(u"abc\\"), u"abc\\");
    EXPECT_EQ(QxCleanMText(u"\\"), u"\\");
}
