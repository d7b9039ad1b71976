// The DOM wrapper: what the exchange writer and reader rely on.
#include "exchange/dom/XmlDocument.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

CXmlDocument newDocument() {
    CXmlDocument document;
    EXPECT_TRUE(document.CreateInstance());
    return document;
}

template <typename Operation>
std::uint32_t errorCodeOf(Operation&& operation) {
    try {
        operation();
    } catch (const CXmlDomError& error) {
        return error.Error();
    }
    return 0;
}

} // namespace

TEST(XmlDom, SerialisesExactlyWhatWasBuiltInCallOrder) {
    CXmlDocument document = newDocument();
    document.appendChild(document.createProcessingInstruction(u"xml", u"version='1.0'"));
    const CXmlElement top = document.createElement(u"Top");
    document.appendChild(top);
    const CXmlElement item = document.createElement(u"Item-2.b");  // digits, "-" and "." after the first
    item.setAttribute(u"Zeta", u"1");
    item.setAttribute(u"Alpha", u"");
    item.setAttribute(u"Mid", u"a & b < c \"q\" 's' 中文");
    item.setAttribute(u"Zeta", u"2");
    top.appendChild(document.createTextNode(u"\n\t"));
    top.appendChild(item);
    top.appendChild(document.createTextNode(u" \n"));

    EXPECT_EQ(document.xml(), CString(u"<?xml version='1.0'?><Top>\n\t<Item-2.b Zeta=\"2\" Alpha=\"\" "
                                      u"Mid=\"a &amp; b &lt; c &quot;q&quot; 's' 中文\"/> \n</Top>"));
    EXPECT_TRUE(document.documentElement().IsSameNode(top));
}

TEST(XmlDom, LoadXmlRefusesEmptyAndMalformedTextWithoutRaising) {
    CXmlDocument document = newDocument();
    for (const char16_t* text : {u"", u"   ", u"<a>", u"<a></b>", u"not xml", u"<a/><b/>", u"<a/>junk", u"<!-- only -->"}) {
        EXPECT_FALSE(document.loadXML(text)) << CString(text);
        EXPECT_FALSE(document.parseErrorReason().IsEmpty()) << CString(text);
        EXPECT_TRUE(document.documentElement().IsNull()) << CString(text);
    }
    EXPECT_TRUE(document.loadXML(u"<?xml version='1.0'?>\n<a>\n\t<b/>\n</a>\n"));
    EXPECT_TRUE(document.parseErrorReason().IsEmpty());
    // White-space text inside elements is content; between top-level nodes it is not.
    EXPECT_EQ(document.xml(), CString(u"<?xml version=\"1.0\"?><a>\n\t<b/>\n</a>"));
    // References to surrogates and to U+FFFE name no character of XML: they go; U+D7FF and U+E000 stay.
    EXPECT_TRUE(document.loadXML(u"<a v='&#xD800;1&#xFFFE;'>&#xD7FF;&#xDFFF;&#xE000;</a>"));
    EXPECT_EQ(document.xml(), CString(u"<a v=\"1\">\uD7FF\uE000</a>"));
}

TEST(XmlDom, ErrorTextsAreTheSystemsThenTheLibrarysThenTheCode) {
    EXPECT_EQ(CXmlDomError(CXmlDomError::kOutOfMemory).ErrorMessage(),
              CString(u"Not enough memory resources are available to complete this operation."));
    EXPECT_EQ(CXmlDomError(CXmlDomError::kTypeMismatch).ErrorMessage(), CString(u"Type mismatch."));
    EXPECT_EQ(CXmlDomError(0xC00CE556, u"library words").ErrorMessage(), CString(u"library words"));
    EXPECT_EQ(CXmlDomError(0xC00CE556).ErrorMessage(), CString(u"Unknown error 0xC00CE556"));
    EXPECT_EQ(CXmlDomError(0x80040205).ErrorMessage(), CString(u"IDispatch error #5"));
    EXPECT_STREQ(CXmlDomError(CXmlDomError::kInvalidPointer).what(), "Invalid pointer");
}

TEST(XmlDom, SelectionFindsAttachedNodesInDocumentOrderAndAttributesTellAbsentFromEmpty) {
    CXmlDocument document = newDocument();
    ASSERT_TRUE(document.loadXML(u"<r empty='' full='x&amp;y'><s n='1'><t n='2'/></s><s n='3'/><x><s n='4'/></x></r>"));
    const CXmlElement r = document.documentElement();
    EXPECT_EQ(r.getAttribute(u"empty"), std::optional<CString>(CString()));
    EXPECT_EQ(r.getAttribute(u"full"), std::optional<CString>(CString(u"x&y")));
    EXPECT_EQ(r.getAttribute(u"missing"), std::nullopt);
    const CXmlNodeList list = document.selectNodes(u"/r/s");
    ASSERT_EQ(list.length(), 2);
    EXPECT_EQ(CXmlElement(list.item(0)).getAttribute(u"n"), std::optional<CString>(u"1"));
    EXPECT_EQ(CXmlElement(list.item(1)).getAttribute(u"n"), std::optional<CString>(u"3"));
    EXPECT_EQ(CXmlElement(document.selectSingleNode(u"/r/s/t")).getAttribute(u"n"), std::optional<CString>(u"2"));
    EXPECT_TRUE(document.selectSingleNode(u"/r/missing").IsNull());
    EXPECT_TRUE(list.item(2).IsNull());
    EXPECT_EQ(document.selectNodes(u"/r/missing").length(), 0);

    // Created but not appended: invisible from the document until appended.
    const CXmlElement loose = document.createElement(u"s");
    EXPECT_EQ(document.selectNodes(u"//s").length(), 3);
    document.documentElement().appendChild(loose);
    EXPECT_EQ(document.selectNodes(u"/r/s").length(), 3);
    EXPECT_EQ(document.xml(),
              CString(u"<r empty=\"\" full=\"x&amp;y\"><s n=\"1\"><t n=\"2\"/></s><s n=\"3\"/>"
                      u"<x><s n=\"4\"/></x><s/></r>"));

    EXPECT_EQ(errorCodeOf([&] { document.selectNodes(u"/r/["); }), CXmlDomError::kUnspecified);

    // A node that is no element gives an empty element reference, and no error.
    ASSERT_TRUE(document.loadXML(u"<a>text</a>"));
    EXPECT_TRUE(CXmlElement(document.selectSingleNode(u"/a/text()")).IsNull());
}

TEST(XmlDom, ReferencesOutliveTheirDocumentAndDeepClonesCarryASubtreeIntoAnother) {
    CXmlDocument scratch = newDocument();
    ASSERT_TRUE(scratch.loadXML(u"<cabinet a='1'>\n\t<product F_Name='甲'/>\n</cabinet>"));
    const CXmlNode clone = scratch.documentElement().cloneNode(true);
    const CXmlElement kept = scratch.documentElement();
    ASSERT_TRUE(scratch.loadXML(u"<b/>"));
    EXPECT_EQ(scratch.xml(), CString(u"<b/>"));
    scratch.Release();
    EXPECT_EQ(errorCodeOf([&] { scratch.xml(); }), CXmlDomError::kInvalidPointer);  // released: no content left
    EXPECT_EQ(kept.getAttribute(u"a"), std::optional<CString>(u"1"));

    CXmlDocument target = newDocument();
    const CXmlElement top = target.createElement(u"Boms");
    target.appendChild(top);
    const CXmlNode appended = top.appendChild(clone);
    EXPECT_EQ(target.xml(), CString(u"<Boms><cabinet a=\"1\">\n\t<product F_Name=\"甲\"/>\n</cabinet></Boms>"));
    EXPECT_EQ(appended.xml(), CString(u"<cabinet a=\"1\">\n\t<product F_Name=\"甲\"/>\n</cabinet>"));
    EXPECT_EQ(kept.xml(), appended.xml());

    const CXmlNode shallow = target.documentElement().cloneNode(false);
    EXPECT_EQ(shallow.xml(), CString(u"<Boms/>"));
}

TEST(XmlDom, DocumentHoldsOneElementAndNoText) {
    CXmlDocument document = newDocument();
    document.appendChild(document.createElement(u"a"));
    const std::vector<std::uint32_t> codes = {
        errorCodeOf([&] { document.appendChild(document.createElement(u"b")); }),
        errorCodeOf([&] { document.appendChild(document.createTextNode(u"\n")); }),
        errorCodeOf([&] { document.createElement(u"bad name"); }), errorCodeOf([&] { document.createElement(u""); }),
    };
    EXPECT_EQ(codes, std::vector<std::uint32_t>(4, CXmlDomError::kUnspecified));

    // A node cannot go below itself, and moving an attached node takes it from its old place.
    const CXmlElement a = document.documentElement();
    const CXmlElement b = document.createElement(u"b");
    const CXmlElement c = document.createElement(u"c");
    a.appendChild(b);
    a.appendChild(c);
    EXPECT_EQ(errorCodeOf([&] { b.appendChild(a); }), CXmlDomError::kUnspecified);
    c.appendChild(b);
    EXPECT_EQ(document.xml(), CString(u"<a><c><b/></c></a>"));
}

