// Text made fit for a terminal: control characters escaped, widths counted in columns.
#include "support/DisplayWidth.h"
#include "support/PrintableText.h"

#include <gtest/gtest.h>

TEST(PrintableText, EscapesEveryControlCharacterAndNothingElse) {
    struct Case { CString text; const char* escaped; const char* keepingLines; };
    const Case cases[] = {
        {u"柜 K01 \\home\\bob", "柜 K01 \\home\\bob", "柜 K01 \\home\\bob"},
        {u"\x1b[A", "\\x1b[A", "\\x1b[A"},
        {u"\x1b]0;owned\x07name", "\\x1b]0;owned\\x07name", "\\x1b]0;owned\\x07name"},
        {u"a\r\nb\tc", "a\\x0d\\x0ab\\x09c", "a\\x0d\nb\\x09c"},
        {CString(u"\0x", 2), "\\x00x", "\\x00x"},
        {u"\x7f\x9b" "2J\x85", "\\x7f\\x9b2J\\x85", "\\x7f\\x9b2J\\x85"},
        {u"\xa0©…", "\xc2\xa0©…", "\xc2\xa0©…"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.escaped);
        EXPECT_EQ(QxPrintable(c.text).ToUtf8(), c.escaped);
        EXPECT_EQ(QxPrintable(c.text, QxLineBreaks::Keep).ToUtf8(), c.keepingLines);
        EXPECT_EQ(QxHasControlCharacter(c.text), QxPrintable(c.text) != c.text);
    }
}

TEST(DisplayWidth, CountsColumnsAndFitsTextIntoThem) {
    struct Case { CString text; int width; int fitTo; const char* fitted; };
    const Case cases[] = {
        {u"K01", 3, 5, "K01  "},
        {u"进线柜", 6, 6, "进线柜"},
        {u"进线柜", 6, 5, "进线…"},
        {u"进线柜", 6, 4, "进… "},  // the wide character that would straddle the cut leaves a gap
        {u"1#进线柜ab", 10, 7, "1#进线…"},
        {u"e\u0301x", 2, 2, "e\u0301x"},  // a combining mark takes no column
        {u"\U0001F600!", 3, 2, "… "},
        {u"", 0, 3, "   "},
        {u"abc", 3, 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fitted);
        EXPECT_EQ(QxDisplayWidth(c.text), c.width);
        const CString fitted = QxFitToWidth(c.text, c.fitTo);
        EXPECT_EQ(fitted.ToUtf8(), c.fitted);
        EXPECT_EQ(QxDisplayWidth(fitted), std::max(c.fitTo, 0));
    }
}
