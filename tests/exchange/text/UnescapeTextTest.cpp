#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

TEST(UnescapeText, ReferencesAreDecodedOnceAndThoseThatFailStayAsText) {
    const struct {
        const char* what;
        const char16_t* text;
        const char16_t* expected;
    } cases[] = {
        {"decimal and hexadecimal", u"&#65;&#x41;&#X41;&#0065;&#20013;&#x6587;", u"AAAA中文"},
        {"zero, no digits, beyond one code unit", u"a&#0;b&#;&#x;&#65536;", u"a&#0;b&#;&#x;&#65536;"},
        {"the five of XML", u"&lt;tag&gt; &quot;x&quot; &apos;y&apos; &amp;", u"<tag> \"x\" 'y' &"},
        {"case folded, the capital listed first", u"&Alpha;&alpha;&ALPHA;", u"\u0391\u0391\u0391"},
        {"HTML names", u"&darr;&euro;&thetasym;&nbsp;", u"\u21D3\u20AC\u03D1\u00A0"},
        {"a decoded character is not read again", u"&amp;lt;", u"&lt;"},
        {"unknown or unended names", u"&foo; &le", u"&foo; &le"},
        {"a lone ampersand", u"a & b; c", u"a & b; c"},
        {"a key of ten characters", u"&abcdefghij;", u"&abcdefghij;"},
        {"so is a long number", u"&#0000000065;", u"&#0000000065;"},
        {"nine characters still count", u"&#00000065;", u"A"},
        {"a wide character in a name", u"&l中t;&&lt;", u"&l中t;&<"},
        {"an ampersand at the end", u"&", u"&"},
    };
    for (const auto& row : cases) EXPECT_EQ(CQxXmlTextDoc::UnescapeText(row.text), CString(row.expected)) << row.what;
}

TEST(UnescapeText, LengthAndNullText) {
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"&amp;&amp;", 5), CString(u"&"));
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"&amp;", 4), CString(u"&amp"));  // the ";" lies beyond the length
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(u"", -1), CString());
    EXPECT_EQ(CQxXmlTextDoc::UnescapeText(nullptr), CString());
}
