// Reading Hexmoor.xml back: round trips, the failure table, and files that are not what they should be.
#include "HexmoorTestSupport.h"
#include "common/CapturedOutput.h"

#include "support/Encoding.h"

using namespace hexmoor_test;

namespace {

const std::string kHead = "<?xml version='1.0'?><Hexmoor>\n\t";
const std::string kSchema = "<DataSchema><NewDataSet/></DataSchema>";
const std::string kUntouched = "~|~|~|~|~|~|~|~|~\n! Invalid pointer";

// A device with every cabinet field set, written as the client writes it.
CString cabinetText(const CString& name) {
    auto device = makeNode(name, u"D", u"0");
    setCabinet(*device, u"1", u"名", u"型", u"尺");
    device->m_strDataSchema = u"<NewDataSet/>";
    return writtenText(*device);
}

CString declaring(const CString& name, const char16_t* encoding) {
    CString text = cabinetText(name);
    text.Replace(u"version='1.0'", CString(u"version='1.0' encoding='") + encoding + u"'");
    return text;
}

std::string utf16le(const CString& text) {
    std::string bytes = "\xFF\xFE";
    for (char16_t ch : text.str()) {
        bytes += static_cast<char>(ch & 0xFF);
        bytes += static_cast<char>(ch >> 8);
    }
    return bytes;
}

// The bytes read as the commands read them into a node holding "~" in every field, to see what the read
// leaves alone: the node described, then a line "! text" for each box it showed.
std::string readIntoFilledNode(const TempFolder& folder, const std::string& bytes) {
    auto node = makeNode(u"~", u"~", u"~");
    setCabinet(*node, u"~", u"~", u"~", u"~");
    node->m_strBoms = u"~";
    node->m_strDataSchema = u"~";
    CapturedOutput output;
    readBytes(folder, bytes, *node);
    std::string read = described(*node);
    for (const CapturedOutput::Box& box : output.boxes) {
        EXPECT_EQ(box.caption, CString(u"Corvane"));
        EXPECT_EQ(box.style, unsigned(MB_OK | MB_ICONINFORMATION));
        read += "\n! " + box.text.ToUtf8();
    }
    return read;
}

} // namespace

TEST(HexmoorReader, RoundTripsKeepADevicesFieldsAndGiveAProjectsStubsInDocumentOrder) {
    TempFolder folder;
    CapturedOutput output;
    // A device: every field through the saved file, its products added to the rows already there.
    auto device = makeNode(u"A&B <柜> \"q\" 'p'", u"ID&1", u"0");
    setCabinet(*device, u"1，2,3", u"名称\t<x>", u"型号&\"", u"800*1500\n");
    device->m_strBoms = u"<cabinet><product F_Name=\"a&amp;b\" F_Numbers=\"1\"/></cabinet>";
    device->m_strDataSchema = u"<NewDataSet><Table>中</Table></NewDataSet>";
    HMProjectTree_INFO read;
    read.m_arrPrimaryBom.Add(BOM_INFO{u"kept", u"", u"", u"", u"", u""});
    saveAndRead(folder, writtenText(*device), read);
    EXPECT_EQ(described(read), described(*device));
    ASSERT_EQ(read.m_arrPrimaryBom.GetSize(), 2);
    EXPECT_EQ(read.m_arrPrimaryBom[1], (BOM_INFO{u"", u"a&b", u"", u"1", u"", u""}));

    // A project: the cabinet fields of a child come from its own document, not from the SubNode.
    auto root = makeNode(u"工程", u"P", u"");
    addChild(*root, u"一期", u"S1", u"100");
    setCabinet(*addChild(*root, u"K01", u"D1", u"0"), u"1", u"柜", u"型", u"尺");
    addChild(*root, u"K01", u"D2", u"x");
    root->m_strDataSchema = u"<NewDataSet/>";
    HMProjectTree_INFO project;
    saveAndRead(folder, writtenText(*root), project);
    EXPECT_EQ(described(project), "工程|P|||||||<NewDataSet/>\n  一期|S1|100\n  K01|D1|0\n  K01|D2|x");
    EXPECT_TRUE(output.boxes.empty());
}

// A read goes by four absolute paths until the first missing attribute or NewDataSet. UTF-16 and UTF-8 are
// known by their marks, legacy code pages by the declaration; GBK characters under a GB2312 label are read as
// Windows reads them, and a declaration in single bytes cannot truly say UTF-32.
TEST(HexmoorReader, EachDocumentReadsUntilItsFirstMissingPieceWithABoxForIt) {
    const auto cabinet = [](const std::string& name) { return name + "|D|0|1|名|型|尺|~|<NewDataSet/>"; };
    const struct {
        const char* what;
        std::string bytes;
        std::string read;
    } cases[] = {
        {"empty", "", kUntouched},
        {"truncated", kHead + "<Node Na", kUntouched},
        {"not XML", "this is not XML", kUntouched},
        {"binary", std::string("\x00\x01\x02\xFF\xFE garbage", 13), kUntouched},
        {"no Node", kHead + "</Hexmoor>", kUntouched},
        {"another root", "<Other><Node Name='a' ID='b' Type=''/></Other>", kUntouched},
        {"an unknown encoding",
         "<?xml version='1.0' encoding='no-such-code-page'?><Hexmoor><Node Name='a' ID='' Type=''/></Hexmoor>",
         kUntouched},
        {"a device without NewDataSet stops after its type",
         kHead + "<Node Name='K' ID='D' Type='0' CirNo='7' CirName='n' CirType='t' CirSize='s'><Boms><cabinet/></Boms>"
                 "<DataSchema>\n</DataSchema></Node></Hexmoor>",
         "K|D|0|~|~|~|~|~|~\n! Invalid pointer"},
        {"a project without NewDataSet reads no sub-nodes",
         kHead + "<Node Name='R' ID='P' Type=''><SubNodes><SubNode Name='K' ID='D' Type='0'/></SubNodes>"
                 "</Node></Hexmoor>",
         "R|P||~|~|~|~|~|~\n! Invalid pointer"},
        {"a device without a cabinet block keeps its BOMs",
         kHead + "<Node Name='K' ID='D' Type='3' CirNo='1' CirName='' CirType='' CirSize=''><Boms><other/></Boms>" +
             kSchema + "</Node></Hexmoor>",
         "K|D|3|1||||~|<NewDataSet/>"},
        {"a project without sub-nodes reads no cabinet fields",
         kHead + "<Node Name='R' ID='' Type='100'>" + kSchema + "</Node></Hexmoor>", "R||100|~|~|~|~|~|<NewDataSet/>"},
        {"no ID: the read stops after the name", kHead + "<Node Name='N' Type=''>" + kSchema + "</Node></Hexmoor>",
         "N|~|~|~|~|~|~|~|~\n! Type mismatch."},
        {"no CirSize: the read stops before it and the BOMs",
         kHead + "<Node Name='K' ID='D' Type='0' CirNo='1' CirName='2' CirType='3'><Boms><cabinet/></Boms>" + kSchema +
             "</Node></Hexmoor>",
         "K|D|0|1|2|3|~|~|<NewDataSet/>\n! Type mismatch."},
        {"a sub-node without an ID ends the children",
         kHead + "<Node Name='R' ID='' Type=''><SubNodes><SubNode Name='a' ID='1' Type='0'/>"
                 "<SubNode Name='b' Type='0'/><SubNode Name='c' ID='3' Type='0'/></SubNodes>" + kSchema +
             "</Node></Hexmoor>",
         "R|||~|~|~|~|~|<NewDataSet/>\n  a|1|0\n! Type mismatch."},
        {"paths only: comments, attribute order and a second Node do not matter; the first Node is read",
         "<!-- c --><Hexmoor><Node Type='' ID='i' Name='first'>  <!-- x -->\r\n"
         "<DataSchema><NewDataSet a='1'/></DataSchema><SubNodes><SubNode Type='100' ID='' Name='dup'/>"
         "<SubNode Name='dup' ID='' Type='100'/></SubNodes></Node><Node Name='second' ID='' Type=''><SubNodes>"
         "<SubNode Name='more' ID='' Type='0'/></SubNodes></Node></Hexmoor>",
         "first|i||~|~|~|~|~|<NewDataSet a=\"1\"/>\n  dup||100\n  dup||100\n  more||0"},
        {"UTF-16 with its mark", utf16le(cabinetText(u"进线柜")), cabinet("进线柜")},
        {"UTF-8 with its mark", "\xEF\xBB\xBF" + cabinetText(u"进线柜").ToUtf8(), cabinet("进线柜")},
        {"GB2312", *EncodeCodePage(declaring(u"进线柜", u"GB2312").view(), "GB2312"), cabinet("进线柜")},
        {"GBK under a GB2312 label", *EncodeCodePage(declaring(u"堃喆进线柜", u"gb2312").view(), "GBK"),
         cabinet("堃喆进线柜")},
        {"UTF-32 declared in single bytes", declaring(u"堃喆进线柜", u"UTF-32").ToUtf8(), cabinet("堃喆进线柜")},
    };
    TempFolder folder;
    for (const auto& row : cases) EXPECT_EQ(readIntoFilledNode(folder, row.bytes), row.read) << row.what;
}

TEST(HexmoorReader, AMissingFileOrADocumentNeverMadeLeavesTheNodeWithABox) {
    TempFolder folder;
    HMProjectTree_INFO node;
    node.m_strName = u"kept";
    CapturedOutput output;
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_FALSE(HMXmlLoadFile(document, folder.logic() + u"none\\Hexmoor.xml"));
    HMXmlReadNode(document, &node);
    CXmlDocument never;
    EXPECT_FALSE(HMXmlLoadFile(never, folder.logic() + u"Hexmoor.xml"));
    HMXmlReadNode(never, &node);
    EXPECT_EQ(described(node), "kept");
    EXPECT_EQ(output.boxes.size(), 2u);
    EXPECT_FALSE(HMXmlReadNode(document, nullptr));
    EXPECT_EQ(output.boxes.size(), 2u);
}

TEST(HexmoorReader, LargeAndDeepDocumentsReadWhole) {
    std::u16string nested;
    const int depth = 100000;
    for (int i = 0; i < depth; ++i) nested += u"<d>";
    for (int i = 0; i < depth; ++i) nested += u"</d>";
    auto device = makeNode(u"K", u"D", u"0");
    device->m_strBoms = CString(u"<cabinet>") + CString(nested) + u"<product F_Name='deep'/></cabinet>";
    device->m_strDataSchema = u"<NewDataSet/>";
    TempFolder folder;
    HMProjectTree_INFO read;
    saveAndRead(folder, writtenText(*device), read);

    auto root = makeNode(u"R", u"", u"");
    root->m_strDataSchema = u"<NewDataSet/>";
    for (int i = 0; i < 20000; ++i) addChild(*root, QxFormat(u"子%d", i), u"", u"0");
    HMProjectTree_INFO project;
    saveAndRead(folder, writtenText(*root), project);
    ASSERT_EQ(project.m_arrChildren.GetSize(), 20000);
    EXPECT_EQ(project.m_arrChildren[19999]->m_strName, CString(u"子19999"));

    // The innermost empty element comes back in its short form.
    CString expected = device->m_strBoms;
    expected.Replace(u"<d></d>", u"<d/>");
    expected.Replace(u"'deep'", u"\"deep\"");
    EXPECT_TRUE(read.m_strBoms == expected);
    ASSERT_EQ(read.m_arrPrimaryBom.GetSize(), 1);
    EXPECT_EQ(read.m_arrPrimaryBom[0].m_strRowName, CString(u"deep"));
}
