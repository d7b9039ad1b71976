#include "XmlTextFixtures.h"

#include "common/TempFolder.h"
#include "exchange/text/QxXmlTextDoc.h"
#include "support/Encoding.h"
#include "support/Format.h"

#include <gtest/gtest.h>

namespace {

const CString kUser = u"<User Name=\"张三\" Company=\"华东电气成套设备厂\"/>";

std::string fixtureBytes(const std::string& name) {
    std::string bytes;
    EXPECT_TRUE(QxFs::ReadBytes(XmlTextFixture(name), bytes));
    return bytes;
}

CString statusLine(size_t bytes, int chars) {
    return QxFormat(u"%d bytes to %d wide chars", static_cast<long long>(bytes), chars);
}

} // namespace

TEST(QxXmlTextDocLoad, ReadsEachFileInTheEncodingItsDeclarationNames) {
    for (const char* name : {"usage-utf8.xml", "usage-nodecl.xml", "usage-gb2312.xml", "usage-gbk.xml"}) {
        SCOPED_TRACE(name);
        CQxXmlTextDoc doc;
        EXPECT_TRUE(doc.Load(XmlTextFixture(name)));
        EXPECT_TRUE(doc.m_strDoc.Contains(kUser));
        EXPECT_EQ(doc.m_strError, statusLine(fixtureBytes(name).size(), doc.m_strDoc.GetLength()));
        EXPECT_EQ(doc.GetElementCount(), 4);
    }
    // The same GBK bytes without their declaration are read as UTF-8, and the Chinese is lost.
    TempFolder dir;
    std::string gbk = fixtureBytes("usage-gb2312.xml");
    dir.writeFile("nodecl.xml", gbk.substr(gbk.find("\r\n") + 2));
    CQxXmlTextDoc doc;
    doc.Load(dir.logic() + u"nodecl.xml");
    EXPECT_FALSE(doc.m_strDoc.Contains(u"张三"));
    EXPECT_TRUE(doc.m_strDoc.Contains(u"\uFFFD"));
}

TEST(QxXmlTextDocLoad, OnlyFiveCharactersOfTheNameAndOnlyTheFirstHundredBytesCount) {
    TempFolder dir;
    const std::string body = "<a>张三</a>";
    dir.writeFile("x.xml", "<?xml version=\"1.0\" encoding=\"UTF-8X\"?>" + body);
    dir.writeFile("comment-first.xml", "<!-- -->\r\n<?xml version=\"1.0\" encoding=\"GBK\"?>" + body);
    dir.writeFile("late.xml", std::string(101, ' ') + "<?xml version=\"1.0\" encoding=\"GBK\"?>" + body);
    dir.writeFile("cut.xml", std::string(70, ' ') + "<?xml version=\"1.0\" encoding=\"GBK\"?>" + body);
    dir.writeFile("unknown.xml", "<?xml version=\"1.0\" encoding=\"x-no-such-code\"?>" + EncodeLegacy(u"<a>张三</a>"));
    dir.writeFile("options.xml", "<?xml encoding=\"GBK//IGNORE\"?>" + EncodeLegacy(u"<a>张三</a>"));
    // "UTF-" is not "UTF-8" in five characters: an unknown name, read in the legacy code page.
    dir.writeFile("utf.xml", "<?xml encoding=\"utf-\"?>" + EncodeLegacy(u"<a>张三</a>"));
    for (const char* name : {"x.xml", "comment-first.xml", "late.xml", "cut.xml", "unknown.xml", "options.xml", "utf.xml"}) {
        SCOPED_TRACE(name);
        CQxXmlTextDoc doc;
        doc.Load(dir.logic() + CString(name));
        EXPECT_TRUE(doc.m_strDoc.Contains(u"张三"));
    }
}

TEST(QxXmlTextDocLoad, AByteOrderMarkIsDecodedLikeOtherBytes) {
    CQxXmlTextDoc doc;
    EXPECT_TRUE(doc.Load(XmlTextFixture("usage-bom.xml")));
    ASSERT_FALSE(doc.m_strDoc.IsEmpty());
    EXPECT_EQ(doc.m_strDoc[0], u'\uFEFF');
    EXPECT_TRUE(doc.m_strDoc.Contains(kUser));
}

TEST(QxXmlTextDocLoad, EmptyMissingAndMalformedFiles) {
    TempFolder dir;
    dir.writeFile("empty.xml", "");
    dir.writeFile("open.xml", "<a><b>项目</b>");
    dir.makeFolder("folder.xml");
    CQxXmlTextDoc doc;
    EXPECT_FALSE(doc.Load(dir.logic() + u"empty.xml"));
    EXPECT_EQ(doc.m_strDoc, CString());
    EXPECT_EQ(doc.m_strError, CString(u"0 bytes to 0 wide chars, Empty document"));

    EXPECT_FALSE(doc.Load(dir.logic() + u"open.xml"));
    EXPECT_EQ(doc.m_strDoc, CString(u"<a><b>项目</b>"));
    EXPECT_EQ(doc.m_strError, CString(u"16 bytes to 12 wide chars, Element 'a' at offset 0 not ended"));
    EXPECT_TRUE(doc.FileWasRead());  // read, though not well formed

    // A file that cannot be opened leaves the document as it was.
    EXPECT_FALSE(doc.Load(dir.logic() + u"missing.xml"));
    EXPECT_EQ(doc.m_strError, CString(u"No such file or directory"));
    EXPECT_FALSE(doc.FileWasRead());
    EXPECT_EQ(doc.m_strDoc, CString(u"<a><b>项目</b>"));
    EXPECT_FALSE(doc.Load(dir.logic() + u"folder.xml"));
    EXPECT_EQ(doc.m_strError, CString(u"Is a directory"));

    // A later SetDoc starts afresh, without the status line.
    EXPECT_TRUE(doc.SetDoc(u"<r/>"));
    EXPECT_EQ(doc.m_strError, CString());
}

TEST(QxXmlTextDocLoad, AFileOfTensOfMegabytesLoads) {
    TempFolder dir;
    const std::string row = "  <Command Name=\"HMBomSubmit\" Count=\"12\" Text=\"电气&amp;成套\"/>\r\n";
    const int rows = 400000;
    std::string bytes = "<?xml version=\"1.0\" encoding=\"GB2312\"?>\r\n<QxCollect>\r\n";
    bytes.reserve(bytes.size() + row.size() * rows + 20);
    const std::string gbkRow = EncodeLegacy(CString(row).str());
    for (int i = 0; i < rows; ++i) bytes += gbkRow;
    bytes += "</QxCollect>";
    ASSERT_GT(bytes.size(), 20u * 1000 * 1000);
    dir.writeFile("big.xml", bytes);

    CQxXmlTextDoc doc;
    EXPECT_TRUE(doc.Load(dir.logic() + u"big.xml"));
    EXPECT_EQ(doc.GetElementCount(), rows + 1);
    EXPECT_TRUE(doc.m_strDoc.EndsWith(u"成套\"/>\r\n</QxCollect>"));
    EXPECT_EQ(doc.m_strError, statusLine(bytes.size(), doc.m_strDoc.GetLength()));
}

TEST(QxXmlTextDocLoad, WideEncodingNamesInASingleByteDeclarationAreWrong) {
    // The declaration was found as single bytes, so the file is no UTF-16 or UTF-32: the legacy code page
    // reads it, as it reads every name that cannot be right.
    TempFolder dir;
    for (const char* name : {"UTF-16", "utf-16le", "UTF-32", "UCS-2", "UCS-4"}) {
        SCOPED_TRACE(name);
        dir.writeFile("wide.xml", std::string("<?xml version=\"1.0\" encoding=\"") + name + "\"?>" + EncodeLegacy(u"<a>张三</a>"));
        CQxXmlTextDoc doc;
        EXPECT_TRUE(doc.Load(dir.logic() + u"wide.xml"));
        EXPECT_TRUE(doc.m_strDoc.EndsWith(u"<a>张三</a>")) << doc.m_strDoc;
    }
    // GBK characters under a GB2312 label are read as Windows reads them.
    dir.writeFile("gb.xml", "<?xml version=\"1.0\" encoding=\"GB2312\"?>" + EncodeLegacy(u"<a>堃喆</a>"));
    CQxXmlTextDoc doc;
    EXPECT_TRUE(doc.Load(dir.logic() + u"gb.xml"));
    EXPECT_TRUE(doc.m_strDoc.EndsWith(u"<a>堃喆</a>"));
}
