// From folders to a project tree: through the Hexmoor.xml of each folder (rows from the documents or
// extracted afresh from the drawings), and through the .itm and .prj files of a local project.
#include "ProjectWalkFixture.h"
#include "drawing/AssemblyFixtures.h"
#include "drawing/assembly/PrimaryScan.h"
#include "project/folders/NodeDocument.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"

namespace {

CString names(const CArray<HMProjectTree_INFO*, HMProjectTree_INFO*>& nodes) {
    CString text;
    for (const HMProjectTree_INFO* node : nodes) text += node->m_strName + u";";
    return text;
}

class FoldersToTree : public ProjectWalkTest {
protected:
    // The substation made as the cloud gave it, K01 with two BOM rows.
    void SetUp() override {
        ProjectWalkTest::SetUp();
        makeSubstation(cloud);
        cloud.m_arrChildren[0]->m_strBoms =
            u"<cabinet><product F_Numbers=\"2\" F_Name=\"断路器\" F_Remark=\"\" F_Model=\"NSX100\" "
            u"F_Parent_BOM_ID=\"\" F_IsSecondary=\"0\"/><product F_Numbers=\"1\" F_Name=\"继电器\" "
            u"F_Remark=\"r\" F_Model=\"RX-1\" F_Parent_BOM_ID=\"12345678\" F_IsSecondary=\"1\"/></cabinet>";
        ASSERT_TRUE(CreateProjectFromNode(client, projects.logic(), &cloud));
        output.printed.Empty();
    }

    // The root as a command reads it from the project folder.
    std::unique_ptr<HMProjectTree_INFO> readRoot() const { return readDocument(projectFolder() + u"Hexmoor.xml"); }
    CString projectFolder() const { return projects.logic() + u"变电站\\"; }

    HMProjectTree_INFO cloud;
};

} // namespace

TEST_F(FoldersToTree, DocumentsGiveTheTreeItsLinksCabinetsAndRows) {
    auto tree = readRoot();
    LinkChildrenAndLoad(tree.get(), projectFolder(), false);

    ASSERT_EQ(names(tree->m_arrChildren), u"K01;二期;K02;");
    // Devices at every depth, in walk order.
    EXPECT_EQ(describe(tree->m_arrCabinets), "K01(0)#id-K01 1,2/进线柜/KYN28/800*1500*2300 P:断路器/NSX100/2/; "
                                             "S:继电器/RX-1/1/r;\n"
                                             "K11(0)#id-K11 11/进线柜/KYN28/800*1500*2300 P: S:\n"
                                             "K02(0)#id-K02 3/进线柜/KYN28/800*1500*2300 P: S:\n");
    HMProjectTree_INFO* sub = tree->m_arrChildren[1];
    EXPECT_EQ(tree->m_arrChildren[0]->m_pParent, tree.get());
    EXPECT_EQ(tree->m_arrCabinets[1]->m_pParent, sub);
    EXPECT_TRUE(output.boxes.empty());
}

TEST_F(FoldersToTree, NodesWhoseDocumentIsNotReadKeepTheirStubAndAreLeftOutOfTheCabinets) {
    // K01's document is gone, K02's cut short, K11's a folder; the root's reads.
    ASSERT_TRUE(QxFs::DeleteFile(projectFolder() + u"K01\\Hexmoor.xml"));
    std::string k02;
    QxFs::ReadBytes(projectFolder() + u"K02\\Hexmoor.xml", k02);
    projects.writeFile("变电站/K02/Hexmoor.xml", k02.substr(0, k02.size() / 2));
    ASSERT_TRUE(QxFs::DeleteFile(projectFolder() + u"二期\\K11\\Hexmoor.xml"));
    projects.makeFolder("变电站/二期/K11/Hexmoor.xml");
    for (const bool extract : {false, true}) {
        output.boxes.clear();
        auto tree = readRoot();
        LinkChildrenAndLoad(tree.get(), projectFolder(), extract);
        EXPECT_EQ(describe(tree->m_arrChildren), "K01(0)#id-K01 /// P: S:\n二期(100)#id-二期 /// P: S:\nK02(0)#id-K02 /// P: S:\n");
        EXPECT_EQ(names(tree->m_arrCabinets), u"");
        ASSERT_FALSE(output.boxes.empty());
        const CString& told = output.boxes.back().text;  // after the reader's own boxes
        for (const char16_t* lost : {u"K01", u"K02", u"二期\\K11"}) EXPECT_TRUE(told.Contains(projectFolder() + lost)) << told.ToUtf8();
        EXPECT_TRUE(told.Contains(u"HMUpdate"));
    }
}

TEST_F(FoldersToTree, UnsafeNamesInDocumentsNeverLeadOutOfTheProject) {
    // A document outside the project that a ".." would reach, listing a device.
    HMProjectTree_INFO outside;
    outside.m_strName = u"outside";
    outside.m_strType = u"100";
    outside.m_strDataSchema = kDataSchema;
    addDevice(outside, u"stolen", u"9");
    HMSaveNodeDocument(client, projects.logic(), &outside);

    // The project's document names a sub-project ".."; K02's own document renames it "..\K01".
    auto root = readRoot();
    addChild(*root, u"..", u"100");
    HMSaveNodeDocument(client, projectFolder(), root.get());
    auto k02 = readDocument(projectFolder() + u"K02\\Hexmoor.xml");
    k02->m_strName = u"..\\K01";
    k02->m_strBoms = cloud.m_arrChildren[0]->m_strBoms;
    HMSaveNodeDocument(client, projectFolder() + u"K02\\", k02.get());

    auto tree = readRoot();
    LinkChildrenAndLoad(tree.get(), projectFolder(), false);
    ASSERT_EQ(names(tree->m_arrChildren), u"K01;二期;..\\K01;..;");
    EXPECT_TRUE(tree->m_arrChildren[3]->m_arrChildren.IsEmpty());
    EXPECT_EQ(names(tree->m_arrCabinets), u"K01;K11;");  // no "stolen", and not the renamed K02
    EXPECT_EQ(describe({tree->m_arrChildren[2]}), "..\\K01(0)#id-K02 3/进线柜/KYN28/800*1500*2300 P: S:\n");
    EXPECT_TRUE(output.printed.Contains(u"名称“..”不能用作" + QxFs::ToNativeText(projectFolder()) + u"中的文件夹名"));
    EXPECT_TRUE(output.printed.Contains(u"名称“..\\K01”不能用作" + QxFs::ToNativeText(projectFolder()) + u"中的文件夹名"));
}

TEST_F(FoldersToTree, LocalProjectIsBuiltFromItsItmAndPrjFiles) {
    // 旧名.prj is not in a folder of its own name.
    for (const char* file : {"本地/本地.itm", "本地/A柜/A柜.prj", "本地/子项/子项.itm", "本地/子项/C柜/C柜.prj", "本地/改名/旧名.prj"})
        projects.writeFile(file, "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
    projects.writeFile("本地/B柜/B柜.prj",
                       "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n柜编号\r\n  3,4  \r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\n"
                       "柜型号\r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\n柜名称\r\n\r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\n"
                       "柜体尺寸\r\n600*800\r\n$END_ONE_NOTE\r\n$END NOTE OF PRJ\r\n$EOF");
    projects.writeFile("本地/B柜/A.dwg", AssemblyFixture("device_a.dxf"));
    projects.writeFile("本地/Hexmoor.xml", "<not read/>");
    projects.makeFolder("本地/E柜/E柜.prj");  // a device file that cannot be read

    HMProjectTree_INFO root;
    BuildTreeFromFolders(projects.logic() + u"本地\\本地.itm", &root);

    // Sub-projects before devices; the devices of the sub-project come first in the root's list.
    // B柜's type block without its value line gives no marker as a value; a device takes only what its .prj says.
    EXPECT_EQ(describe(root.m_arrChildren), "子项(100)# 子项/// P: S:\nA柜(0)# /// P: S:\n"
                                            "B柜(0)# 3,4///600*800 P: S:继电器/RX-1/2/;断路器/NSX100/1/;\nE柜(0)# /// P: S:\n");
    EXPECT_EQ(names(root.m_arrCabinets), u"C柜;A柜;B柜;E柜;");
    EXPECT_EQ(root.m_arrChildren[0]->m_strPath, projects.logic() + u"本地\\子项\\");
    EXPECT_EQ(root.m_arrChildren[2]->m_strPath, projects.logic() + u"本地\\B柜\\");
    EXPECT_EQ(root.m_arrCabinets[0]->m_pParent, root.m_arrChildren[0]);
}

// Extraction afresh from the drawings: the device's own rows, then the cabinet groups of the scan.
class FoldersToTreeExtraction : public AssemblyTest {
protected:
    std::shared_ptr<CloudScript> script = std::make_shared<CloudScript>();
    CHexmoorInteFace client{std::make_unique<ScriptedBackend>(script)};
};

TEST_F(FoldersToTreeExtraction, DevicesGetTheirRowsFromTheirDrawingsAndTheScan) {
    TempFolder install;
    SetCorvaneInstallDirOverride(install.logic());
    ASSERT_TRUE(LayOutTemplateDrawing(install.logic()));
    layOutStation();
    layOutDevice("K01", "K01", false);

    HMProjectTree_INFO root;
    root.m_strName = u"Station";
    root.m_strDataSchema = u"<NewDataSet/>";
    for (const char16_t* name : {u"K01", u"K02"}) {
        auto* device = new HMProjectTree_INFO;
        device->m_strName = name;
        device->m_strType = u"0";
        device->m_strCirNo = name;
        device->m_strDataSchema = u"<NewDataSet/>";
        device->m_strBoms = u"<cabinet><product F_Numbers=\"9\" F_Name=\"旧\" F_Remark=\"\" F_Model=\"old\" "
                            u"F_Parent_BOM_ID=\"\" F_IsSecondary=\"0\"/></cabinet>";
        root.m_arrChildren.Add(device);
    }
    HMSaveNodeDocument(client, station(), &root);
    HMSaveNodeDocument(client, station() + u"K01\\", root.m_arrChildren[0]);
    // K02 is made as the cloud would make it: its folder holds only the template drawing.
    CapturedOutput output;
    ASSERT_TRUE(CreateDeviceFromNode(client, station(), root.m_arrChildren[1]));
    SetCorvaneInstallDirOverride(CString());

    const auto tree = readDocument(station() + u"Hexmoor.xml");
    QxScanPrimaryDiagram(station());
    LinkChildrenAndLoad(tree.get(), station(), true);

    // The documents' rows play no part; the device's own drawing keeps the drawers' rows out, and the
    // template drawing adds no row of its own.
    EXPECT_EQ(describe(tree->m_arrCabinets), "K01(0)# K01/// P:断路器/NSX100/1/;互感器/CT-1/1/;继电器/RX-1/1/; S:\n"
                                            "K02(0)# K02/// P:N1/X1/3/; S:继电器/RX-1/1/;\n");
}
