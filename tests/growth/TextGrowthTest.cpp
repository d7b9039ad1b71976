// Text functions fed millions of pieces: each once did work for every piece over the whole rest of the
// text, which at these sizes runs for minutes to hours.
#include "drawing/bom/MTextCleaner.h"
#include "exchange/text/QxXmlTextDoc.h"
#include "support/Format.h"
#include "support/TextHelpers.h"

#include <gtest/gtest.h>

namespace {

CString repeated(const char16_t* piece, int times) {
    std::u16string text;
    for (int i = 0; i < times; ++i) text += piece;
    return CString(std::move(text));
}

} // namespace

// Deleting each code from the text in turn moves the rest of the text every time, which at this size runs
// for a quarter of an hour; the cleaner must stay linear.
TEST(MTextCleanerGrowthTest, MillionsOfFormatCodes) {
    constexpr int kCodes = 4'000'000;
    const CString cleaned = QxCleanMText(repeated(u"\\Lx", kCodes) + u"\\A1;end");
    EXPECT_TRUE(cleaned == repeated(u"x", kCodes) + u"end");  // a difference of megabytes would drown the report
}

// A list of two million short items, as a drawing's list of secondary drawings may hold: cutting the rest
// of the text off after each item copies it every time, which at this size runs for hours.
TEST(SplitStringGrowthTest, TwoMillionItems) {
    constexpr int kPairs = 1'000'000;
    CStringArray parts;
    ASSERT_TRUE(SplitString(repeated(u"a|b|", kPairs) + u"end", u"|", parts));
    CStringArray expected;
    for (int i = 0; i < 2 * kPairs; ++i) expected.Add(i % 2 ? u"b" : u"a");
    expected.Add(u"end");
    EXPECT_TRUE(parts == expected);
}

// Every end tag looks for its start tag among the open elements; half a million open elements and as many
// end tags that match none of them once cost a scan of the whole stack per end tag.
TEST(XmlTextGrowth, EndTagsThatMatchNoneOfManyOpenElements) {
    constexpr int n = 500000;
    CQxXmlTextDoc doc;
    EXPECT_FALSE(doc.SetDoc(repeated(u"<a>", n) + repeated(u"</b>", n)));
    EXPECT_EQ(doc.GetElementCount(), n);
    EXPECT_EQ(doc.m_strError, QxFormat(u"No start tag for end tag 'b' at offset %d", 3 * n));
}
