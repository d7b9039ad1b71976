// The plain-text XML class on usage files crafted to cost more than linear time: each must stay quick.
#include "exchange/text/QxXmlTextDoc.h"
#include "support/Format.h"

#include <gtest/gtest.h>

namespace {

CString repeated(const char16_t* piece, int times) {
    std::u16string text;
    for (int i = 0; i < times; ++i) text += piece;
    return CString(text);
}

} // namespace

// Every end tag looks for its start tag among the open elements; half a million open elements and as many
// end tags that match none of them once cost a scan of the whole stack per end tag.
TEST(XmlTextGrowth, EndTagsThatMatchNoneOfManyOpenElements) {
    constexpr int n = 500000;
    CQxXmlTextDoc doc;
    EXPECT_FALSE(doc.SetDoc(repeated(u"<a>", n) + repeated(u"</b>", n)));
    EXPECT_EQ(doc.GetElementCount(), n);
    EXPECT_EQ(doc.m_strError, QxFormat(u"No start tag for end tag 'b' at offset %d", 3 * n));
}
