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
    ASSERT_EQ(read.m_arrChildren.GetSize(), 3);
    const char16_t* ids[] = {u"S1", u"D1", u"D2"};
    const char16_t* types[] = {u"100", u"0", u"x"};
    for (int i = 0; i < 3; ++i) {
        const HMProjectTree_INFO& stub = *read.m_arrChildren[i];
        EXPECT_EQ(stub.m_strID, CString(ids[i]));
        EXPECT_EQ(stub.m_strType, CString(types[i]));
        // The cabinet fields of a child come from its own document, not from the SubNode.
        EXPECT_EQ(stub.m_strCirNo, CString());
        EXPECT_EQ(stub.m_nCabCount, 1);
        EXPECT_EQ(stub.m_pParent, nullptr);
    }
    EXPECT_EQ(read.m_arrChildren[2]->m_strName, CString(u"K01"));
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

TEST(HexmoorReader, MissingCabinetOrSubNodesIsNoFailure) {
    TempFolder folder;
    auto node = prefilled();
    CapturedOutput output;
    readBytes(folder, kHead + "<Node Name='K' ID='D' Type='3' CirNo='1' CirName='' CirType='' CirSize=''>"
                              "<Boms><other/></Boms><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>", *node);
    EXPECT_EQ(node->m_strBoms, CString(u"old boms"));
    EXPECT_EQ(node->m_strCirNo, CString(u"1"));
    EXPECT_EQ(node->m_strCirName, CString());

    auto project = prefilled();
    readBytes(folder, kHead + "<Node Name='R' ID='' Type='100'><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>", *project);
    EXPECT_TRUE(project->m_arrChildren.IsEmpty());
    EXPECT_EQ(project->m_strType, CString(u"100"));
    // A project reads no cabinet fields.
    EXPECT_EQ(project->m_strCirNo, CString(u"old no"));
    EXPECT_TRUE(output.boxes.empty());
}

TEST(HexmoorReader, MissingAttributeOfAFoundElementIsAFailedRead) {
    TempFolder folder;
    CapturedOutput output;

    auto noId = prefilled();
    readBytes(folder, kHead + "<Node Name='N' Type=''><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>", *noId);
    EXPECT_EQ(noId->m_strName, CString(u"N"));
    EXPECT_EQ(noId->m_strID, CString(u"old id"));
    EXPECT_EQ(noId->m_strType, CString(u"old type"));

    auto noSize = prefilled();
    readBytes(folder, kHead + "<Node Name='K' ID='D' Type='0' CirNo='1' CirName='2' CirType='3'>"
                              "<Boms><cabinet/></Boms><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>", *noSize);
    EXPECT_EQ(noSize->m_strCirType, CString(u"3"));
    EXPECT_EQ(noSize->m_strCirSize, CString(u"old size"));
    EXPECT_EQ(noSize->m_strBoms, CString(u"old boms"));

    auto badChild = prefilled();
    readBytes(folder, kHead + "<Node Name='R' ID='' Type=''><SubNodes><SubNode Name='a' ID='1' Type='0'/>"
                              "<SubNode Name='b' Type='0'/><SubNode Name='c' ID='3' Type='0'/></SubNodes>"
                              "<DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>", *badChild);
    ASSERT_EQ(badChild->m_arrChildren.GetSize(), 1);
    EXPECT_EQ(badChild->m_arrChildren[0]->m_strName, CString(u"a"));

    ASSERT_EQ(output.boxes.size(), 3u);
    for (const CapturedOutput::Box& box : output.boxes) EXPECT_EQ(box.text, CString(u"Type mismatch."));
}

TEST(HexmoorReader, GoesByPathsOnlyAndTakesTheFirstNode) {
    TempFolder folder;
    auto node = std::make_unique<HMProjectTree_INFO>();
    CapturedOutput output;
    readBytes(folder, "<!-- c --><Hexmoor><Node Type='' ID='i' Name='first'>  <!-- x -->\r\n"
                      "<DataSchema><NewDataSet a='1'/></DataSchema><SubNodes><SubNode Type='100' ID='' Name='dup'/>"
                      "<SubNode Name='dup' ID='' Type='100'/></SubNodes></Node>"
                      "<Node Name='second' ID='' Type=''><SubNodes><SubNode Name='more' ID='' Type='0'/></SubNodes></Node></Hexmoor>",
              *node);
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(node->m_strName, CString(u"first"));
    EXPECT_EQ(node->m_strDataSchema, CString(u"<NewDataSet a=\"1\"/>"));
    ASSERT_EQ(node->m_arrChildren.GetSize(), 3);
    EXPECT_EQ(node->m_arrChildren[0]->m_strName, CString(u"dup"));
    EXPECT_EQ(node->m_arrChildren[1]->m_strName, CString(u"dup"));
    EXPECT_EQ(node->m_arrChildren[2]->m_strName, CString(u"more"));
}

TEST(HexmoorReader, ReadsUtf16AndDeclaredLegacyEncodings) {
    const CString text = cabinetText(u"进线柜");
    TempFolder folder;

    HMProjectTree_INFO fromUtf16;
    readBytes(folder, utf16le(text), fromUtf16);
    EXPECT_EQ(fromUtf16.m_strName, CString(u"进线柜"));
    EXPECT_EQ(fromUtf16.m_strCirSize, CString(u"尺"));

    HMProjectTree_INFO fromBom;
    readBytes(folder, "\xEF\xBB\xBF" + text.ToUtf8(), fromBom);
    EXPECT_EQ(fromBom.m_strCirName, CString(u"名"));

    CString declared = text;
    declared.Replace(u"version='1.0'", u"version='1.0' encoding='GB2312'");
    HMProjectTree_INFO fromGb;
    readBytes(folder, *EncodeCodePage(declared.view(), "GB2312"), fromGb);
    EXPECT_EQ(fromGb.m_strName, CString(u"进线柜"));
    EXPECT_EQ(fromGb.m_strCirType, CString(u"型"));
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

TEST(HexmoorReader, Gb2312LabelsAreReadAsWindowsReadsThem) {
    // 堃 and 喆 are GBK characters outside GB2312: files labelled GB2312 carry them all the same.
    CString declared = cabinetText(u"堃喆进线柜");
    declared.Replace(u"version='1.0'", u"version='1.0' encoding='gb2312'");
    const std::string bytes = *EncodeCodePage(declared.view(), "GBK");
    TempFolder folder;
    HMProjectTree_INFO read;
    CapturedOutput output;
    readBytes(folder, bytes, read);
    EXPECT_EQ(read.m_strName, CString(u"堃喆进线柜"));

    // A declaration in single bytes cannot truly say UTF-32: the bytes are read for what they are.
    declared.Replace(u"encoding='gb2312'", u"encoding='UTF-32'");
    HMProjectTree_INFO fromUtf32;
    readBytes(folder, declared.ToUtf8(), fromUtf32);
    EXPECT_EQ(fromUtf32.m_strName, CString(u"堃喆进线柜"));
    EXPECT_TRUE(output.boxes.empty());
}
