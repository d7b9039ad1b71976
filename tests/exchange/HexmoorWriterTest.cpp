// The written text of Hexmoor.xml, compared whole.
#include "HexmoorTestSupport.h"
#include "common/CapturedOutput.h"
#include "common/ShellRun.h"

using namespace hexmoor_test;

namespace {

const CString kHead = u"<?xml version='1.0'?><Hexmoor>\n\t";
const CString kTail = u"\n</Hexmoor>";

} // namespace

TEST(HexmoorWriter, EachKindOfNodeWritesItsOwnAttributesAndBlocks) {
    auto root = makeNode(u"变电站工程", u"P-1", u"");
    addChild(*root, u"一期", u"S-1", u"100");
    setCabinet(*addChild(*root, u"K01", u"D-1", u"0"), u"1,2", u"进线柜", u"KYN28", u"800*1500");
    addChild(*root, u"blank", u"D-2", u"");
    root->m_strDataSchema = u"<NewDataSet><Table F_ID=\"7\"/></NewDataSet>";
    root->m_strBoms = u"<cabinet/>";
    auto sub = makeNode(u"二期", u"S-2", u"100");
    setCabinet(*sub, u"9", u"x", u"y", u"z");
    auto device = makeNode(u"K02", u"D-9", u"5");
    setCabinet(*device, u"3", u"出线柜", u"", u"600*1400");
    device->m_strBoms =
        u"<?xml version='1.0'?>\n<cabinet ID='c1'>\n  <product F_Name='断路器' F_Numbers='2'/><!-- kept -->\n</cabinet>\n";
    device->m_strDataSchema = u"<NewDataSet/>";
    addChild(*device, u"ignored", u"", u"0");
    const struct {
        const char* what;
        const HMProjectTree_INFO& node;
        CString text;
    } rows[] = {
        {"a project names its children with their own attribute sets and writes no BOM block", *root,
         u"<Node Name=\"变电站工程\" ID=\"P-1\" Type=\"\">\n\t\t<SubNodes>"
         u"\n\t\t\t<SubNode Name=\"一期\" ID=\"S-1\" Type=\"100\"/>"
         u"\n\t\t\t<SubNode Name=\"K01\" ID=\"D-1\" Type=\"0\" CirNo=\"1,2\" CirName=\"进线柜\" CirType=\"KYN28\" "
         u"CirSize=\"800*1500\"/>\n\t\t\t<SubNode Name=\"blank\" ID=\"D-2\" Type=\"\"/>"
         u"\n\t\t</SubNodes>\n\t\t<DataSchema>"
         u"\n\t\t\t<NewDataSet><Table F_ID=\"7\"/></NewDataSet>\n\t\t</DataSchema>\n\t</Node>"},
        {"a sub-project without children or schema keeps its white space and has no cabinet attributes", *sub,
         u"<Node Name=\"二期\" ID=\"S-2\" Type=\"100\">\n\t\t<SubNodes>\n\t\t</SubNodes>"
         u"\n\t\t<DataSchema>\n\t\t\t\n\t\t</DataSchema>\n\t</Node>"},
        {"a device carries both blocks copied element for element, and no sub-nodes", *device,
         u"<Node Name=\"K02\" ID=\"D-9\" Type=\"5\" CirNo=\"3\" CirName=\"出线柜\" CirType=\"\" CirSize=\"600*1400\">"
         u"\n\t\t<Boms>\n\t\t\t<cabinet ID=\"c1\">\n  <product F_Name=\"断路器\" F_Numbers=\"2\"/><!-- kept -->"
         u"\n</cabinet>"
         u"\n\t\t</Boms>\n\t\t<DataSchema>\n\t\t\t<NewDataSet/>\n\t\t</DataSchema>\n\t</Node>"},
    };
    for (const auto& row : rows) EXPECT_EQ(writtenText(row.node), kHead + row.text + kTail) << row.what;

    // Blocks that do not parse are left out, and the kind test is exact.
    for (const char16_t* boms : {u"", u"<cabinet>", u"not xml", u"<a/><b/>"}) {
        auto broken = makeNode(u"K", u"", u" 100");
        broken->m_strBoms = boms;
        broken->m_strDataSchema = u"<NewDataSet";
        EXPECT_EQ(writtenText(*broken),
                  kHead + u"<Node Name=\"K\" ID=\"\" Type=\" 100\" CirNo=\"\" CirName=\"\" CirType=\"\" CirSize=\"\">"
                          u"\n\t\t<Boms>\n\t\t</Boms>\n\t\t<DataSchema>\n\t\t\t\n\t\t</DataSchema>\n\t</Node>" + kTail)
            << CString(boms);
    }
    auto other = makeNode(u"K", u"", u"0100");
    other->m_strBoms = u"<other><product F_Name='x'/></other>";
    EXPECT_TRUE(writtenText(*other).Contains(u"<Boms>\n\t\t\t<other><product F_Name=\"x\"/></other>\n\t\t</Boms>"));
}

TEST(HexmoorWriter, ANullNodeWritesNothing) {
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_FALSE(HMXmlWriteNode(document, nullptr));
    CString text;
    HMXmlDocumentText(document, text);
    EXPECT_EQ(text, CString(u"<?xml version='1.0'?><Hexmoor/>"));
}

TEST(HexmoorWriter, SaveWritesUtf8WithoutByteOrderMarkThroughAnAtomicRewrite) {
    TempFolder folder;
    const CString path = folder.logic() + u"Hexmoor.xml";
    folder.writeFile("Hexmoor.xml", "old content that is longer than the new one");
    ASSERT_TRUE(SaveHexmoorXml(path, u"<?xml version='1.0'?><Hexmoor>名</Hexmoor>"));
    EXPECT_EQ(folder.readFile("Hexmoor.xml"), "<?xml version='1.0'?><Hexmoor>\xE5\x90\x8D</Hexmoor>");

    EXPECT_FALSE(SaveHexmoorXml(u"", u"x"));
    EXPECT_FALSE(SaveHexmoorXml(u"Hexmoor.xml", u"x"));
    EXPECT_FALSE(SaveHexmoorXml(folder.logic() + u"missing\\Hexmoor.xml", u"x"));
    EXPECT_FALSE(SaveHexmoorXml(folder.logic(), u"x"));
    EXPECT_FALSE(folder.exists("missing"));
}

namespace {

// Python's expat, a strict XML 1.0 reader, parses the file and prints the Node's attributes and the names
// of the cabinet's products, each as Python's repr; an empty output means it refused the file.
std::string strictRead(const TempFolder& folder) {
    const std::string script = folder.native() + "/read.py";
    folder.writeFile("read.py",
                     "import sys, xml.etree.ElementTree as ET\n"
                     "root = ET.parse(sys.argv[1]).getroot()\n"
                     "node = root.find('Node')\n"
                     "print(repr(node.get('Name')), repr(node.get('CirName')), repr(node.get('CirSize')))\n"
                     "print([p.get('F_Name') for p in root.iter('product')])\n"
                     "print(repr(root.find('Node/DataSchema/NewDataSet').text))\n");
    return RunShellCommand("/usr/bin/python3 " + script + " " + folder.native() + "/Hexmoor.xml 2>/dev/null").out;
}

} // namespace

TEST(HexmoorWriter, ControlCharactersAreDroppedSoThatAStrictReaderTakesTheFile) {
    auto device = makeNode(u"K\x01\x07" u"01", u"D", u"0");
    setCabinet(*device, u"1", u"进线\x1B柜\x7F", u"KYN", u"800\t*\r\n1500\x0B\x0C\uFFFE");
    // Blocks from the cloud hold them too, raw or as references that the XML library lets through.
    device->m_strBoms = u"<cabinet><product F_Name=\"a&#7;b\x08\"/><product F_Name=\"c&#x1F;\"/></cabinet>";
    device->m_strDataSchema = u"<NewDataSet>x&#1;y\x02z</NewDataSet>";

    TempFolder folder;
    const CString text = writtenText(*device);
    ASSERT_TRUE(SaveHexmoorXml(folder.logic() + u"Hexmoor.xml", text));
    // Tab, line feed and carriage return stay (as references inside attribute values); DEL is no C0 control.
    EXPECT_EQ(strictRead(folder), "'K01' '进线柜\\x7f' '800\\t*\\r\\n1500'\n['ab', 'c']\n'xyz'\n");

    HMProjectTree_INFO read;
    saveAndRead(folder, text, read);
    EXPECT_EQ(described(read), "K01|D|0|1|进线柜\x7f|KYN|800\t*\r\n1500|<cabinet><product F_Name=\"ab\"/>"
                               "<product F_Name=\"c\"/></cabinet>|<NewDataSet>xyz</NewDataSet>");
    ASSERT_EQ(read.m_arrPrimaryBom.GetSize(), 2);
    EXPECT_EQ(read.m_arrPrimaryBom[0].m_strRowName, CString(u"ab"));
}
