// Reading Hexmoor.xml back: round trips, the failure table, and files that are not what they should be.
#include "HexmoorTestSupport.h"
#include "common/CapturedOutput.h"

#include "support/Encoding.h"

using namespace hexmoor_test;

namespace {

const std::string kHead = "<?xml version='1.0'?><Hexmoor>\n\t";

// A node with something in every field the reader may set, to see what it leaves alone.
std::unique_ptr<HMProjectTree_INFO> prefilled() {
    auto node = makeNode(u"old name", u"old id", u"old type");
    setCabinet(*node, u"old no", u"old cir", u"old model", u"old size");
    node->m_strBoms = u"old boms";
    node->m_strDataSchema = u"old schema";
    return node;
}

void expectUntouched(const HMProjectTree_INFO& node) {
    EXPECT_EQ(fieldsOf(node), fieldsOf(*prefilled()));
    EXPECT_TRUE(node.m_arrChildren.IsEmpty());
}

// A device with every cabinet field set, written as the client writes it.
CString cabinetText(const CString& name) {
    auto device = makeNode(name, u"D", u"0");
    setCabinet(*device, u"1", u"名", u"型", u"尺");
    device->m_strDataSchema = u"<NewDataSet/>";
    return writtenText(*device);
}

std::string utf16le(const CString& text) {
    std::string bytes = "\xFF\xFE";
    for (char16_t ch : text.str()) {
        bytes += static_cast<char>(ch & 0xFF);
        bytes += static_cast<char>(ch >> 8);
    }
    return bytes;
}

} // namespace

TEST(HexmoorReader, DeviceRoundTripKeepsEveryFieldThroughTheSavedFile) {
    auto device = makeNode(u"A&B <柜> \"q\" 'p'", u"ID&1", u"0");
    setCabinet(*device, u"1，2,3", u"名称\t<x>", u"型号&\"", u"800*1500\n");
    device->m_strBoms = u"<cabinet><product F_Name=\"a&amp;b\" F_Numbers=\"1\"/></cabinet>";
    device->m_strDataSchema = u"<NewDataSet><Table>中</Table></NewDataSet>";

    TempFolder folder;
    HMProjectTree_INFO read;
    read.m_arrPrimaryBom.Add(BOM_INFO{u"kept", u"", u"", u"", u"", u""});
    CapturedOutput output;
    saveAndRead(folder, writtenText(*device), read);
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(fieldsOf(read), fieldsOf(*device));
    EXPECT_TRUE(read.m_arrChildren.IsEmpty());
    ASSERT_EQ(read.m_arrPrimaryBom.GetSize(), 2);
    EXPECT_EQ(read.m_arrPrimaryBom[1], (BOM_INFO{u"", u"a&b", u"", u"1", u"", u""}));
}

TEST(HexmoorReader, ProjectRoundTripGivesStubsInDocumentOrder) {
    auto root = makeNode(u"工程", u"P", u"");
    addChild(*root, u"一期", u"S1", u"100");
    setCabinet(*addChild(*root, u"K01", u"D1", u"0"), u"1", u"柜", u"型", u"尺");
    addChild(*root, u"K01", u"D2", u"x");
    root->m_strDataSchema = u"<NewDataSet/>";

    TempFolder folder;
    HMProjectTree_INFO read;
    CapturedOutput output;
    saveAndRead(folder, writtenText(*root), read);
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(read.m_strName, CString(u"工程"));
    EXPECT_EQ(read.m_strType, CString());
    EXPECT_EQ(read.m_strDataSchema, CString(u"<NewDataSet/>"));
    // The cabinet fields of a child come from its own document, not from the SubNode.
    std::vector<std::vector<CString>> stubs;
    for (const HMProjectTree_INFO* stub : read.m_arrChildren) {
        stubs.push_back(fieldsOf(*stub));
        EXPECT_EQ(stub->m_nCabCount, 1);
        EXPECT_EQ(stub->m_pParent, nullptr);
    }
    EXPECT_EQ(stubs, (std::vector<std::vector<CString>>{{u"一期", u"S1", u"100", u"", u"", u"", u"", u"", u""},
                                                        {u"K01", u"D1", u"0", u"", u"", u"", u"", u"", u""},
                                                        {u"K01", u"D2", u"x", u"", u"", u"", u"", u"", u""}}));
}

TEST(HexmoorReader, DocumentsWithoutANodeLeaveTheNodeUnchangedWithABox) {
    TempFolder folder;
    const std::string cases[] = {
        "",                                          // empty
        "<?xml version='1.0'?><Hexmoor>\n\t<Node Na",  // truncated
        "this is not XML",
        std::string("\x00\x01\x02\xFF\xFE garbage", 13),
        "<?xml version='1.0'?><Hexmoor>\n</Hexmoor>",  // no Node
        "<Other><Node Name='a' ID='b' Type=''/></Other>",
        "<?xml version='1.0' encoding='no-such-code-page'?><Hexmoor><Node Name='a' ID='' Type=''/></Hexmoor>",
    };
    for (const std::string& bytes : cases) {
        auto node = prefilled();
        CapturedOutput output;
        readBytes(folder, bytes, *node);
        expectUntouched(*node);
        ASSERT_EQ(output.boxes.size(), 1u) << bytes;
        EXPECT_EQ(output.boxes[0].text, CString(u"Invalid pointer"));
        EXPECT_EQ(output.boxes[0].caption, CString(u"Corvane"));
        EXPECT_EQ(output.boxes[0].style, unsigned(MB_OK | MB_ICONINFORMATION));
    }

    // A file that is not there, and a document that was never made.
    auto node = prefilled();
    CapturedOutput output;
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_FALSE(HMXmlLoadFile(document, folder.logic() + u"none\\Hexmoor.xml"));
    HMXmlReadNode(document, node.get());
    CXmlDocument never;
    EXPECT_FALSE(HMXmlLoadFile(never, folder.logic() + u"Hexmoor.xml"));
    HMXmlReadNode(never, node.get());
    expectUntouched(*node);
    EXPECT_EQ(output.boxes.size(), 2u);
    EXPECT_FALSE(HMXmlReadNode(document, nullptr));
    EXPECT_EQ(output.boxes.size(), 2u);
}

TEST(HexmoorReader, MissingNewDataSetStopsAfterTheType) {
    TempFolder folder;
    auto device = makeNode(u"K", u"D", u"0");
    setCabinet(*device, u"7", u"n", u"t", u"s");
    device->m_strBoms = u"<cabinet/>";
    auto root = makeNode(u"R", u"P", u"");
    addChild(*root, u"K", u"D", u"0");

    for (const HMProjectTree_INFO* written : {device.get(), root.get()}) {
        auto node = prefilled();
        CapturedOutput output;
        saveAndRead(folder, writtenText(*written), *node, false);
        ASSERT_EQ(output.boxes.size(), 1u);
        EXPECT_EQ(output.boxes[0].text, CString(u"Invalid pointer"));
        auto expected = prefilled();
        expected->m_strName = written->m_strName;
        expected->m_strID = written->m_strID;
        expected->m_strType = written->m_strType;
        EXPECT_EQ(fieldsOf(*node), fieldsOf(*expected));
        EXPECT_TRUE(node->m_arrChildren.IsEmpty());
    }
}

struct RawReadCase {
    const char* what;
    std::string document;
    std::vector<CString> fields;  // fieldsOf the node read into a prefilled one
    std::vector<CString> children;
    std::vector<CString> boxes;
};

TEST(HexmoorReader, RawDocumentsReadUntilTheFirstMissingAttribute) {
    const std::string schema = "<DataSchema><NewDataSet/></DataSchema>";
    const RawReadCase cases[] = {
        {"a device without a cabinet block keeps its BOMs",
         kHead + "<Node Name='K' ID='D' Type='3' CirNo='1' CirName='' CirType='' CirSize=''><Boms><other/></Boms>" + schema + "</Node></Hexmoor>",
         {u"K", u"D", u"3", u"1", u"", u"", u"", u"old boms", u"<NewDataSet/>"}, {}, {}},
        {"a project without sub-nodes reads no cabinet fields",
         kHead + "<Node Name='R' ID='' Type='100'>" + schema + "</Node></Hexmoor>",
         {u"R", u"", u"100", u"old no", u"old cir", u"old model", u"old size", u"old boms", u"<NewDataSet/>"}, {}, {}},
        {"no ID: the read stops after the name",
         kHead + "<Node Name='N' Type=''>" + schema + "</Node></Hexmoor>",
         {u"N", u"old id", u"old type", u"old no", u"old cir", u"old model", u"old size", u"old boms", u"old schema"}, {},
         {u"Type mismatch."}},
        {"no CirSize: the read stops before it and the BOMs",
         kHead + "<Node Name='K' ID='D' Type='0' CirNo='1' CirName='2' CirType='3'><Boms><cabinet/></Boms>" + schema + "</Node></Hexmoor>",
         {u"K", u"D", u"0", u"1", u"2", u"3", u"old size", u"old boms", u"<NewDataSet/>"}, {}, {u"Type mismatch."}},
        {"a sub-node without an ID ends the children",
         kHead + "<Node Name='R' ID='' Type=''><SubNodes><SubNode Name='a' ID='1' Type='0'/><SubNode Name='b' Type='0'/>"
                 "<SubNode Name='c' ID='3' Type='0'/></SubNodes>" + schema + "</Node></Hexmoor>",
         {u"R", u"", u"", u"old no", u"old cir", u"old model", u"old size", u"old boms", u"<NewDataSet/>"}, {u"a"},
         {u"Type mismatch."}},
        {"paths only: comments, attribute order and a second Node do not matter; the first Node is read",
         "<!-- c --><Hexmoor><Node Type='' ID='i' Name='first'>  <!-- x -->\r\n<DataSchema><NewDataSet a='1'/></DataSchema>"
         "<SubNodes><SubNode Type='100' ID='' Name='dup'/><SubNode Name='dup' ID='' Type='100'/></SubNodes></Node>"
         "<Node Name='second' ID='' Type=''><SubNodes><SubNode Name='more' ID='' Type='0'/></SubNodes></Node></Hexmoor>",
         {u"first", u"i", u"", u"old no", u"old cir", u"old model", u"old size", u"old boms", u"<NewDataSet a=\"1\"/>"},
         {u"dup", u"dup", u"more"}, {}},
    };
    TempFolder folder;
    for (const RawReadCase& row : cases) {
        SCOPED_TRACE(row.what);
        auto node = prefilled();
        CapturedOutput output;
        readBytes(folder, row.document, *node);
        EXPECT_EQ(fieldsOf(*node), row.fields);
        std::vector<CString> children;
        for (int i = 0; i < node->m_arrChildren.GetSize(); ++i) children.push_back(node->m_arrChildren[i]->m_strName);
        EXPECT_EQ(children, row.children);
        std::vector<CString> boxes;
        for (const CapturedOutput::Box& box : output.boxes) boxes.push_back(box.text);
        EXPECT_EQ(boxes, row.boxes);
    }
}

// UTF-16 and UTF-8 by their marks, legacy code pages by the declaration; GBK characters under a GB2312
// label are read as Windows reads them, and a declaration in single bytes cannot truly say UTF-32.
TEST(HexmoorReader, ReadsEveryFieldInUtf16Utf8AndDeclaredLegacyEncodings) {
    const auto declaring = [](const CString& name, const char16_t* encoding) {
        CString text = cabinetText(name);
        text.Replace(u"version='1.0'", CString(u"version='1.0' encoding='") + encoding + u"'");
        return text;
    };
    const struct {
        const char* what;
        CString name;
        std::string bytes;
    } cases[] = {
        {"UTF-16 with its mark", u"进线柜", utf16le(cabinetText(u"进线柜"))},
        {"UTF-8 with its mark", u"进线柜", "\xEF\xBB\xBF" + cabinetText(u"进线柜").ToUtf8()},
        {"GB2312", u"进线柜", *EncodeCodePage(declaring(u"进线柜", u"GB2312").view(), "GB2312")},
        {"GBK under a GB2312 label", u"堃喆进线柜", *EncodeCodePage(declaring(u"堃喆进线柜", u"gb2312").view(), "GBK")},
        {"UTF-32 declared in single bytes", u"堃喆进线柜", declaring(u"堃喆进线柜", u"UTF-32").ToUtf8()},
    };
    TempFolder folder;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        HMProjectTree_INFO read;
        CapturedOutput output;
        readBytes(folder, row.bytes, read);
        auto expected = makeNode(row.name, u"D", u"0");
        setCabinet(*expected, u"1", u"名", u"型", u"尺");
        expected->m_strDataSchema = u"<NewDataSet/>";
        EXPECT_EQ(fieldsOf(read), fieldsOf(*expected));
        EXPECT_TRUE(output.boxes.empty());
    }
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
    std::u16string expected = u"<cabinet>";
    for (int i = 1; i < depth; ++i) expected += u"<d>";
    expected += u"<d/>";
    for (int i = 1; i < depth; ++i) expected += u"</d>";
    expected += u"<product F_Name=\"deep\"/></cabinet>";
    EXPECT_TRUE(read.m_strBoms == CString(expected));
    ASSERT_EQ(read.m_arrPrimaryBom.GetSize(), 1);
    EXPECT_EQ(read.m_arrPrimaryBom[0].m_strRowName, CString(u"deep"));
}
