#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

namespace {

CString unescape(const char16_t* text) { return CQxXmlTextDoc::UnescapeText(text); }

} // namespace

TEST(UnescapeText, NumericReferences) {
    EXPECT_EQ(unescape(u"&#65;&#x41;&#X41;&#0065;"), CString(u"AAAA"));
    EXPECT_EQ(unescape(u"&#20013;&#x6587;"), CString(u"中文"));
    EXPECT_EQ(unescape(u"a&#0;b"), CString(u"a&#0;b"));
    EXPECT_EQ(unescape(u"&#;&#x;"), CString(u"&#;&#x;"));
    EXPECT_EQ(unescape(u"&#65536;"), CString(u"&#65536;"));  // beyond one code unit
}

TEST(UnescapeText, NamedReferencesAndCase) {
    EXPECT_EQ(unescape(u"&lt;tag&gt; &quot;x&quot; &apos;y&apos; &amp;"), CString(u"<tag> \"x\" 'y' &"));
    EXPECT_EQ(unescape(u"&Alpha;&alpha;&ALPHA;"), CString(u"\u0391\u0391\u0391"));  // the capital is listed first
    EXPECT_EQ(unescape(u"&darr;&euro;&thetasym;&nbsp;"), CString(u"\u21D3\u20AC\u03D1\u00A0"));
    EXPECT_EQ(unescape(u"&amp;lt;"), CString(u"&lt;"));  // a decoded character is not read again
}

TEST(UnescapeText, ReferencesThatFailStayAsText) {
    EXPECT_EQ(unescape(u"&foo; &le"), CString(u"&foo; &le"));
    EXPECT_EQ(unescape(u"a & b; c"), CString(u"a & b; c"));
    EXPECT_EQ(unescape(u"&abcdefghij;"), CString(u"&abcdefghij;"));   // a key of ten characters
    EXPECT_EQ(unescape(u"&#0000000065;"), CString(u"&#0000000065;"));  // so is a long number
    EXPECT_EQ(unescape(u"&#00000065;"), CString(u"A"));                 // nine characters still count
    EXPECT_EQ(unescape(u"&l中t;&&lt;"), CString(u"&l中t;&<"));
    EXPECT_EQ(unescape(u"&"), CString(u"&"));
}

TEST(UnescapeText, LengthAndNullText) {
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"&amp;&amp;", 5), CString(u"&"));
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"&amp;", 4), CString(u"&amp"));  // the ";" lies beyond the length
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"", -1), CString());
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(nullptr), CString());
}
