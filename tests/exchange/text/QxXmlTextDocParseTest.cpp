#include "exchange/text/NodeStack.h"
#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

struct ParseCase {
    const char* what;
    std::u16string text;
    std::u16string message;
    std::optional<int> elements = std::nullopt;
};

const std::u16string kLongName(60, u'n');

const ParseCase kParseCases[] = {
    {"well formed, with the markup that hides tags",
     u"<?xml version=\"1.0\"?>\r\n<!DOCTYPE r [<!ELEMENT r ANY> <!ENTITY e \"]>\">]>\r\n"
     u"<r a=\"x>y\" b='/>'><!-- <c> --><![CDATA[</r>]]><e/><f>t &amp; u</f >"
     u"<中文 属性=\"值\"></中文><g[1]></g[2]><h/></r>\r\n<!-- after -->",
     u"", 6},
    {"empty", u"", u"Empty document"},
    {"text alone", u"just text", u"No root element"},
    {"a comment alone", u"<?xml version=\"1.0\"?><!-- only a comment -->", u"No root element"},
    {"two roots", u"<a/>\r\n<b></b>", u"Root element has sibling"},
    {"end tag of no open element", u"<a></b></a>", u"No start tag for end tag 'b' at offset 3"},
    {"names are case-sensitive", u"<a></A>", u"No start tag for end tag 'A' at offset 3"},
    {"end tag passing an open one", u"<a><b></a>", u"End tag 'a' at offset 6 does not match start tag '.50b' at offset 3"},
    {"element left open", u"<a>\r\n  <b>", u"Element 'b' at offset 7 not ended"},
    {"only the first message is kept", u"<a></x><b></a>", u"No start tag for end tag 'x' at offset 3"},
    {"names in messages stop after 50 characters", u"<a></" + kLongName + u">",
     u"No start tag for end tag '" + kLongName.substr(0, 50) + u"' at offset 3"},
    {"a passed start tag is closed and the walk goes on", u"<a><b><c></a><d/>",
     u"End tag 'a' at offset 9 does not match start tag '.50c' at offset 6", 4},
    {"an end tag takes the innermost open element of its name", u"<a><b><a><c></a></b></a>",
     u"End tag 'a' at offset 12 does not match start tag '.50c' at offset 9", 4},
    {"each end tag closes one element of its name", u"<a><a></a></a></a>", u"No start tag for end tag 'a' at offset 14"},
    {"an element closed by an outer end tag is no longer open", u"<r><b><c></b></c></r>",
     u"End tag 'b' at offset 9 does not match start tag '.50c' at offset 6", 3},
    {"an element closed by its own end tag is no longer open", u"<r><c></c></c></r>", u"No start tag for end tag 'c' at offset 10"},
    {"space before a tag name", u"<a>< b/></a>", u"Incorrect tag name character at offset 4"},
    {"digit starting a tag name", u"<a><1/></a>", u"Incorrect tag name character at offset 4"},
    {"unknown ! tag", u"<a><!x></a>", u"Incorrect ! tag at offset 5"},
    {"half a comment opener", u"<a><!-x--></a>", u"Incorrect comment tag at offset 6"},
    {"misspelt CDATA", u"<a><![CDATX[x]]></a>", u"Incorrect tag at offset 6"},
    {"unterminated comment", u"<a><!-- x", u"Comment at offset 3 unterminated"},
    {"unterminated processing instruction", u"<a><?pi x", u"Processing instruction at offset 3 unterminated"},
    {"unterminated CDATA", u"<a><![CDATA[x</a>", u"CDATA Section at offset 3 unterminated"},
    {"unterminated doctype", u"<!DOCTYPE a [ <!ELEMENT a ANY> <a/>", u"Doctype at offset 0 unterminated"},
    {"unterminated end tag", u"<a></a", u"Element end tag at offset 3 unterminated"},
    {"unterminated start tag", u"<a><b x='>", u"Element tag at offset 3 unterminated"},
    {"a lone < at the end", u"<a>text<", u"Element tag at offset 7 unterminated"},
};

} // namespace

TEST(QxXmlTextDocParse, MessagesAndElementCountsOfEachWalk) {
    for (const ParseCase& row : kParseCases) {
        SCOPED_TRACE(row.what);
        CQxXmlTextDoc doc;
        EXPECT_EQ(doc.SetDoc(row.text.c_str()), row.message.empty());
        EXPECT_EQ(doc.m_strDoc, CString(row.text));  // the text is kept whatever the walk finds
        EXPECT_EQ(doc.m_strError, CString(row.message));
        if (row.elements) {
            EXPECT_EQ(doc.GetElementCount(), *row.elements);
        }
    }
    CQxXmlTextDoc blank;
    EXPECT_FALSE(blank.SetDoc(nullptr));
    EXPECT_EQ(blank.m_strError, CString(u"Empty document"));
}

TEST(QxXmlTextDocParse, TheStackOfOpenElementsGrowsByTwiceAndSix) {
    CNodeStack<int> stack;
    std::vector<int> capacities{stack.Capacity()};
    for (int i = 0; i < 100; ++i) {
        stack.Push(i);
        if (stack.Capacity() != capacities.back()) capacities.push_back(stack.Capacity());
    }
    EXPECT_EQ(capacities, (std::vector<int>{6, 18, 42, 90, 186}));
    EXPECT_EQ(stack.Top(), 99);
    EXPECT_EQ(stack.At(0), 0);

    std::u16string deep;
    for (int i = 0; i < 20000; ++i) deep += u"<e>";
    for (int i = 0; i < 20000; ++i) deep += u"</e>";
    CQxXmlTextDoc doc;
    EXPECT_TRUE(doc.SetDoc(deep.c_str()));
    EXPECT_EQ(doc.GetElementCount(), 20000);
}
