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

// A byte-order mark is decoded like other bytes: it stays as the text's first character.
TEST(QxXmlTextDocLoad, ReadsEachFileInTheEncodingItsDeclarationNames) {
    for (const char* name :
         {"usage-utf8.xml", "usage-nodecl.xml", "usage-gb2312.xml", "usage-gbk.xml", "usage-bom.xml"}) {
        SCOPED_TRACE(name);
        CQxXmlTextDoc doc;
        EXPECT_TRUE(doc.Load(XmlTextFixture(name)));
        EXPECT_TRUE(doc.m_strDoc.Contains(kUser));
        EXPECT_EQ(doc.m_strError, statusLine(fixtureBytes(name).size(), doc.m_strDoc.GetLength()));
        EXPECT_EQ(doc.GetElementCount(), 4);
        EXPECT_EQ(doc.m_strDoc.Left(1) == u"\uFEFF", name == std::string("usage-bom.xml"));
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

// Only five characters of the name and only the first hundred bytes count; a name that cannot be right
// (unknown, or wide although the declaration was found as single bytes) means the legacy code page.
TEST(QxXmlTextDocLoad, DeclarationsThatCannotBeRightLoseNoText) {
    const std::u16string body = u"<a>张三堃喆</a>";  // 堃喆: GBK characters outside GB2312
    const std::string utf8 = CString(body).ToUtf8();
    const std::string legacy = EncodeLegacy(body);
    const auto declared = [](const char* name) { return std::string("<?xml version=\"1.0\" encoding=\"") + name + "\"?>"; };
    const std::pair<const char*, std::string> cases[] = {
        {"UTF-8X: its first five characters", declared("UTF-8X") + utf8},
        {"a comment ahead of the declaration", "<!-- -->\r\n" + declared("GBK") + utf8},
        {"the target of an instruction is no attribute", "<?encoding=\"GBK\"?>" + utf8},
        {"a declaration past the first hundred bytes", std::string(101, ' ') + declared("GBK") + utf8},
        {"a declaration cut by the hundredth byte", std::string(70, ' ') + declared("GBK") + utf8},
        {"an unknown name", declared("x-no-such-code") + legacy},
        {"a name with converter options", "<?xml encoding=\"GBK//IGNORE\"?>" + legacy},
        {"utf- is not UTF-8 in five characters", "<?xml encoding=\"utf-\"?>" + legacy},
        {"UTF-16", declared("UTF-16") + legacy},
        {"utf-16le", declared("utf-16le") + legacy},
        {"UTF-32", declared("UTF-32") + legacy},
        {"UCS-2", declared("UCS-2") + legacy},
        {"UCS-4", declared("UCS-4") + legacy},
        {"GBK characters under a GB2312 label, read as Windows reads them", declared("GB2312") + legacy},
    };
    TempFolder dir;
    for (const auto& [what, bytes] : cases) {
        SCOPED_TRACE(what);
        dir.writeFile("declared.xml", bytes);
        CQxXmlTextDoc doc;
        EXPECT_TRUE(doc.Load(dir.logic() + u"declared.xml"));
        EXPECT_TRUE(doc.m_strDoc.EndsWith(CString(body))) << doc.m_strDoc;
    }
}

TEST(QxXmlTextDocLoad, EmptyMissingAndMalformedFiles) {
    TempFolder dir;
    dir.writeFile("empty.xml", "");
    dir.writeFile("open.xml", "<a><b>项目</b>");
    dir.makeFolder("folder.xml");
    CQxXmlTextDoc doc;
    // What a load answers, then the document, its status line and whether the file was read.
    const auto load = [&](const char16_t* name) {
        const bool loaded = doc.Load(dir.logic() + name);
        return QxFormat(u"%d|%s|%s|%d", loaded, doc.m_strDoc, doc.m_strError, doc.FileWasRead());
    };
    EXPECT_EQ(load(u"empty.xml"), CString(u"0||0 bytes to 0 wide chars, Empty document|1"));
    // Read, though not well formed.
    EXPECT_EQ(load(u"open.xml"),
              CString(u"0|<a><b>项目</b>|16 bytes to 12 wide chars, Element 'a' at offset 0 not ended|1"));
    // A file that cannot be opened leaves the document as it was.
    EXPECT_EQ(load(u"missing.xml"), CString(u"0|<a><b>项目</b>|No such file or directory|0"));
    EXPECT_EQ(load(u"folder.xml"), CString(u"0|<a><b>项目</b>|Is a directory|0"));

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
