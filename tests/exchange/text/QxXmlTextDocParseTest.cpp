#include "exchange/text/NodeStack.h"
#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

CString parseMessage(const char16_t* text) {
    CQxXmlTextDoc doc;
    doc.SetDoc(text);
    EXPECT_EQ(doc.m_strDoc, CString(text));  // the text is kept whatever the walk finds
    return doc.m_strError;
}

} // namespace

TEST(QxXmlTextDocParse, AWellFormedDocumentHasNoMessage) {
    CQxXmlTextDoc doc;
    EXPECT_TRUE(doc.SetDoc(u"<?xml version=\"1.0\"?>\r\n<!DOCTYPE r [<!ELEMENT r ANY> <!ENTITY e \"]>\">]>\r\n"
                           u"<r a=\"x>y\" b='/>'><!-- <c> --><![CDATA[</r>]]><e/><f>t &amp; u</f >"
                           u"<中文 属性=\"值\"></中文><g[1]></g[2]><h/></r>\r\n<!-- after -->"));
    EXPECT_EQ(doc.m_strError, CString());
    EXPECT_EQ(doc.GetElementCount(), 6);
}

TEST(QxXmlTextDocParse, DocumentLevelMessages) {
    EXPECT_EQ(parseMessage(u""), CString(u"Empty document"));
    CQxXmlTextDoc blank;
    EXPECT_FALSE(blank.SetDoc(nullptr));
    EXPECT_EQ(blank.m_strError, CString(u"Empty document"));
    EXPECT_EQ(parseMessage(u"just text"), CString(u"No root element"));
    EXPECT_EQ(parseMessage(u"<?xml version=\"1.0\"?><!-- only a comment -->"), CString(u"No root element"));
    EXPECT_EQ(parseMessage(u"<a/>\r\n<b></b>"), CString(u"Root element has sibling"));
}

TEST(QxXmlTextDocParse, EndTagMessages) {
    EXPECT_EQ(parseMessage(u"<a></b></a>"), CString(u"No start tag for end tag 'b' at offset 3"));
    EXPECT_EQ(parseMessage(u"<a></A>"), CString(u"No start tag for end tag 'A' at offset 3"));
    EXPECT_EQ(parseMessage(u"<a><b></a>"),
              CString(u"End tag 'a' at offset 6 does not match start tag '.50b' at offset 3"));
    EXPECT_EQ(parseMessage(u"<a>\r\n  <b>"), CString(u"Element 'b' at offset 7 not ended"));
    // Only the first message of a parse is kept.
    EXPECT_EQ(parseMessage(u"<a></x><b></a>"), CString(u"No start tag for end tag 'x' at offset 3"));
    // Names in messages stop after 50 characters.
    const std::u16string longName(60, u'n');
    EXPECT_EQ(parseMessage((u"<a></" + longName + u">").c_str()),
              CString(u"No start tag for end tag '" + longName.substr(0, 50) + u"' at offset 3"));
}

TEST(QxXmlTextDocParse, APassedStartTagIsClosedAndTheWalkGoesOn) {
    CQxXmlTextDoc doc;
    EXPECT_FALSE(doc.SetDoc(u"<a><b><c></a><d/>"));
    EXPECT_EQ(doc.m_strError, CString(u"End tag 'a' at offset 9 does not match start tag '.50c' at offset 6"));
    EXPECT_EQ(doc.GetElementCount(), 4);  // d follows the closed a at the top level: one message only
}

TEST(QxXmlTextDocParse, AnEndTagTakesTheInnermostOpenElementOfItsName) {
    CQxXmlTextDoc doc;
    EXPECT_FALSE(doc.SetDoc(u"<a><b><a><c></a></b></a>"));
    EXPECT_EQ(doc.m_strError, CString(u"End tag 'a' at offset 12 does not match start tag '.50c' at offset 9"));
    EXPECT_EQ(doc.GetElementCount(), 4);
    // Each end tag closes one element of its name; one more finds none open.
    EXPECT_EQ(parseMessage(u"<a><a></a></a></a>"), CString(u"No start tag for end tag 'a' at offset 14"));
    // A closed element is no longer open to later end tags, whether its own end tag or an outer one closed it.
    EXPECT_EQ(parseMessage(u"<r><b><c></b></c></r>"), CString(u"End tag 'b' at offset 9 does not match start tag '.50c' at offset 6"));
    EXPECT_EQ(parseMessage(u"<r><c></c></c></r>"), CString(u"No start tag for end tag 'c' at offset 10"));
    CQxXmlTextDoc closed;
    closed.SetDoc(u"<r><b><c></b></c></r>");
    EXPECT_EQ(closed.GetElementCount(), 3);
}

TEST(QxXmlTextDocParse, BadAndUnterminatedMarkup) {
    const std::vector<std::pair<const char16_t*, const char16_t*>> cases = {
        {u"<a>< b/></a>", u"Incorrect tag name character at offset 4"},
        {u"<a><1/></a>", u"Incorrect tag name character at offset 4"},
        {u"<a><!x></a>", u"Incorrect ! tag at offset 5"},
        {u"<a><!-x--></a>", u"Incorrect comment tag at offset 6"},
        {u"<a><![CDATX[x]]></a>", u"Incorrect tag at offset 6"},
        {u"<a><!-- x", u"Comment at offset 3 unterminated"},
        {u"<a><?pi x", u"Processing instruction at offset 3 unterminated"},
        {u"<a><![CDATA[x</a>", u"CDATA Section at offset 3 unterminated"},
        {u"<!DOCTYPE a [ <!ELEMENT a ANY> <a/>", u"Doctype at offset 0 unterminated"},
        {u"<a></a", u"Element end tag at offset 3 unterminated"},
        {u"<a><b x='>", u"Element tag at offset 3 unterminated"},
        {u"<a>text<", u"Element tag at offset 7 unterminated"},
    };
    for (const auto& [text, message] : cases) EXPECT_EQ(parseMessage(text), CString(message)) << CString(text);
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
