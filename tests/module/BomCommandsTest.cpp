// HMBomSubmit, HMBomCmp and HMUpdate on a project made from a scripted cloud, with the drawings of the
// assembly tests drawn into it afterwards, as a person would.
#include "ProjectCommandFixture.h"
#include "drawing/dxf/DxfReader.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "support/FileSystem.h"

#include <filesystem>
#include <functional>
#include <map>

namespace {

// Station with D1 (cabinet K02) and D2 (the given cabinets), as the cloud has it.
std::function<HMProjectTree_INFO*(HMProjectTree_INFO*)> stationInCloud(const CString& d2Cabinets) {
    return [d2Cabinets](HMProjectTree_INFO*) {
        HMProjectTree_INFO* root = CloudNode(nullptr, u"Station", u"");
        CloudNode(root, u"D1", u"0", u"K02");
        CloudNode(root, u"D2", u"0", d2Cabinets);
        return root;
    };
}

} // namespace

class BomCommands : public ProjectCommandTest {
protected:
    // Made from the cloud, then drawn: the primary diagram and its secondary drawings, D1's own drawing.
    void makeAndDrawStation(const CString& d2Cabinets) {
        cloud().projectInfo = stationInCloud(d2Cabinets);
        run(u"HMXmCreate");
        ASSERT_EQ(GetRecentProject(), stationFile());
        layOutStation();
        install.writeFile(projectPath("Station/D1/A.dwg"), AssemblyDrawing("device_a.dxf"));
        queuedCommands();
        output.printed.Empty();
        cloud().projectInfo = nullptr;
        cloud().projectInfoCalls = 0;
        for (const std::string relative : {"Hexmoor.xml", "D1/Hexmoor.xml", "D2/Hexmoor.xml"}) documentsMade[relative] = document(relative);
    }
    std::string document(const std::string& relative) const { return install.readFile(projectPath("Station/" + relative)); }
    // What the commands did, as one line: the cloud's submits and comparisons, the boxes, the documents
    // rewritten since the project was made, and the cabinet check's flag.
    std::string outcome() const {
        std::string text = "submits=" + std::to_string(scripted.script->submitBomCalls) +
                           " compares=" + std::to_string(scripted.script->bomCmpCalls) + " boxes=";
        for (const auto& box : output.boxes) text += box.text.ToUtf8() + "|";
        text += " rewritten=";
        for (const auto& [relative, made] : documentsMade)
            if (document(relative) != made) text += relative + ",";
        return text + " flag=" + std::to_string(g_bBomCheckFailed);
    }

    std::map<std::string, std::string> documentsMade;
};

// The same project sent twice: the cloud takes it, then refuses it.
TEST_F(BomCommands, SubmitSendsEveryDeviceWithItsRowsAndSavesOnlyTheNodesTheLibraryMarkedEvenWhenRefused) {
    makeAndDrawStation(u"K03");
    std::string sent;
    cloud().submitBom = [&sent](HMProjectTree_INFO* tree, bool flag) {
        if (tree->m_arrCabinets.GetSize() != 2) return false;
        HMProjectTree_INFO* d1 = tree->m_arrCabinets[0];
        sent = CString(d1->m_strID).ToUtf8() + " P:" + rowsText(d1->m_arrPrimaryBom) + " S:" +
               rowsText(d1->m_arrSecondaryBom) + " D2 P:" + rowsText(tree->m_arrCabinets[1]->m_arrPrimaryBom) +
               " flag=" + std::to_string(flag);
        // The library marks D1 alone; it changes D2 in memory too, which must not reach D2's file.
        d1->m_bChanged = true;
        d1->m_strBoms = u"<cabinet ID=\"id-D1\"><product F_Name=\"N1\" F_Model=\"X1\" F_Numbers=\"3\"/></cabinet>";
        tree->m_arrCabinets[1]->m_strCirName = u"changed in memory";
        return true;
    };
    run(u"HMBomSubmit");
    // K02's counted primary parts, and D1's own drawing for the secondary rows.
    EXPECT_EQ(sent, "id-D1 P:N1/X1/3; S:继电器/RX-1/2;断路器/NSX100/1; D2 P:指示灯/AD16/1; flag=0");
    EXPECT_EQ(outcome(), "submits=1 compares=0 boxes= rewritten=D1/Hexmoor.xml, flag=0");
    EXPECT_NE(document("D1/Hexmoor.xml").find("F_Name=\"N1\""), std::string::npos);

    cloud().submitBom = [](HMProjectTree_INFO* tree, bool) {
        tree->m_arrCabinets[1]->m_bChanged = true;
        tree->m_arrCabinets[1]->m_strCirName = u"从云端";
        return false;
    };
    run(u"HMBomSubmit");
    EXPECT_EQ(outcome(), "submits=2 compares=0 boxes=提交明细失败！| rewritten=D1/Hexmoor.xml,D2/Hexmoor.xml, flag=0");
    EXPECT_NE(document("D2/Hexmoor.xml").find("CirName=\"从云端\""), std::string::npos);
}

TEST_F(BomCommands, AFailedCabinetCheckSendsNothingAndWritesNothing) {
    makeAndDrawStation(u"K03,K04");  // K03 counts its lamp once, K04 twice: the cabinets differ
    run(u"HMBomSubmit");
    const std::string refused = "屏柜 K03 和屏柜 K04 内容应该一致，但是现在不一致，一次元件内容不一样，请检查一次系统图。|";
    EXPECT_EQ(outcome(), "submits=0 compares=0 boxes=" + refused + " rewritten= flag=0");
    // The comparison stops the same way, and a later command starts with the flag lowered.
    run(u"HMBomCmp");
    EXPECT_EQ(outcome(), "submits=0 compares=0 boxes=" + refused + refused + " rewritten= flag=0");
}

// A command reads each drawing of the project once, however many drawers name it, and keeps nothing of it
// past its end: the next command reads them again (all but the primary diagram, which the editor holds).
TEST_F(BomCommands, CompareGivesTheCloudTheExtractedRowsAndWritesNothing) {
    makeAndDrawStation(u"K03");
    size_t drawings = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(install.native() + "/My Projects/Station"))
        drawings += entry.path().extension() == ".dwg" || entry.path().extension() == ".DWG";
    const std::uint64_t before = QxDrawingFilesRead();
    run(u"HMBomCmp");
    EXPECT_EQ(QxDrawingFilesRead() - before, drawings);
    EXPECT_EQ(outcome(), "submits=0 compares=1 boxes= rewritten= flag=0");
    ASSERT_EQ(cloud().comparedDevices.size(), 2u);
    EXPECT_EQ(cloud().comparedDevices[1], "D2:1/0");

    run(u"HMBomCmp");
    EXPECT_EQ(QxDrawingFilesRead() - before, 2 * drawings - 1);
    ASSERT_EQ(cloud().comparedDevices.size(), 4u);
    EXPECT_EQ(cloud().comparedDevices[2], cloud().comparedDevices[0]);
    EXPECT_EQ(cloud().comparedDevices[3], cloud().comparedDevices[1]);
}

TEST_F(BomCommands, WithoutDevicesSubmitRefusesAndCompareStillAsks) {
    cloud().projectInfo = [](HMProjectTree_INFO*) { return CloudNode(nullptr, u"Empty", u""); };
    run(u"HMXmCreate");
    run(u"HMBomSubmit");
    run(u"HMBomCmp");
    EXPECT_EQ(outcome(), "submits=0 compares=1 boxes=此项目没有屏柜，不能提交明细信息！| rewritten= flag=0");
}

// A project without a cloud document (none at all, or one that moved away) is named in each command's own
// message; a project file at the root or above the chosen folders is refused outright, though a document
// stands there. Nothing is asked of the cloud, shown in a box or made.
TEST_F(BomCommands, AProjectTheCommandsCannotUseIsToldAndNothingIsAskedOrMade) {
    makeAndDrawStation(u"K03");
    install.writeFile("Hexmoor.xml", document("Hexmoor.xml"));
    install.writeFile(projectPath("Hexmoor.xml"), document("Hexmoor.xml"));
    const struct {
        const char16_t* command;
        const char16_t* noDocument;  // null: the command's own check, in ItmSubmitTest
    } commands[] = {
        {u"HMBomSubmit", u"项目%s的Hexmoor相关信息不存在，无法提交明细！请选择提交项目。\n"},
        {u"HMBomCmp", u"项目%s的Hexmoor相关信息不存在，无法进行比对！\n"},
        {u"HMUpdate", u"项目%s的Hexmoor相关信息不存在，无法从Hexmoor调用明细！\n"},
        {u"HMItmSubmit", nullptr},
    };
    // Unusable: no backslash (the folder "\"), the root itself, the install folder, the projects folder, above
    // the install.
    const std::pair<CString, bool> recents[] = {
        {CString(), false}, {projects() + u"Moved\\Moved.itm", false}, {u"Station.itm", true},
        {u"\\Station.itm", true}, {install.logic() + u"Station.itm", true}, {projects() + u"Station.itm", true},
        {install.logic() + u"..\\Station.itm", true}};
    for (const auto& [recent, unusable] : recents) {
        SetRecentProject(recent);
        for (const auto& each : commands) {
            if (!unusable && !each.noDocument) continue;
            output.printed.Empty();
            run(each.command);
            const CString told = unusable ? u"当前项目" + QxFs::ToNativeText(recent) + u"不能使用"
                                          : QxFormat(each.noDocument, QxFs::ToNativeText(recent));
            EXPECT_TRUE(output.printed.Contains(told)) << CString(each.command).ToUtf8() << output.printed.ToUtf8();
        }
    }
    EXPECT_EQ(cloud().submitBomCalls + cloud().bomCmpCalls + cloud().projectInfoCalls + cloud().submitItmCalls, 0);
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_FALSE(install.exists("Station"));
    EXPECT_FALSE(install.exists("My Projects/Moved"));
    EXPECT_FALSE(install.exists(projectPath("D1")));
}

TEST_F(BomCommands, ADocumentThatDoesNotReadIsToldAndKeptAsItIs) {
    install.writeFile(projectPath("Broken/Broken.itm"), "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
    install.writeFile(projectPath("Broken/Hexmoor.xml"), "<Hexmoor><Node Name=\"Broken\"");
    SetRecentProject(projects() + u"Broken\\Broken.itm");
    run(u"HMBomSubmit");
    run(u"HMUpdate");
    EXPECT_GE(output.boxes.size(), 2u);  // the reader's box, then the submit's "no cabinets"
    EXPECT_EQ(cloud().submitBomCalls, 0);
    EXPECT_EQ(install.readFile(projectPath("Broken/Hexmoor.xml")), "<Hexmoor><Node Name=\"Broken\"");
    EXPECT_TRUE(queuedCommands().empty());
}

// How the walk leaves out a device whose document does not read, and tells it, is FoldersToTreeTest's; here
// the command sends the others, keeps the damaged document and HMUpdate rebuilds it.
TEST_F(BomCommands, ADeviceWhoseDocumentWasNotReadIsLeftOutAndRebuiltByUpdate) {
    makeAndDrawStation(u"K03");
    const std::string cut = document("D2/Hexmoor.xml").substr(0, 60);  // a write-back killed half-way
    install.writeFile(projectPath("Station/D2/Hexmoor.xml"), cut);
    int sent = -1;
    cloud().submitBom = [&sent](HMProjectTree_INFO* tree, bool) {
        sent = tree->m_arrCabinets.GetSize();
        for (HMProjectTree_INFO* child : tree->m_arrChildren) child->m_bChanged = true;
        return true;
    };
    run(u"HMBomSubmit");
    EXPECT_EQ(sent, 1);  // D1 alone
    EXPECT_EQ(document("D2/Hexmoor.xml"), cut);

    cloud().projectInfo = stationInCloud(u"K03");
    run(u"HMUpdate");
    EXPECT_NE(document("D2/Hexmoor.xml").find("CirNo=\"K03\""), std::string::npos);
}

using UpdateCommand = BomCommands;

// What the walk keeps and adds is TreeToFoldersTest's (UpdateMakesOnlyTheNewDeviceAndKeepsEverythingLocal).
TEST_F(UpdateCommand, AsksWithTheLocalTreeAndMakesWhatTheCloudGave) {
    makeAndDrawStation(u"K03");
    // Without an answer from the cloud nothing is written.
    run(u"HMUpdate");
    EXPECT_EQ(cloud().projectInfoCalls, 1);
    EXPECT_EQ(outcome(), "submits=0 compares=0 boxes= rewritten= flag=0");
    EXPECT_FALSE(output.printed.Contains(u"更新完毕"));
    EXPECT_TRUE(queuedCommands().empty());

    int localDevices = -1;
    cloud().projectInfo = [&localDevices](HMProjectTree_INFO* local) -> HMProjectTree_INFO* {
        if (!local) return nullptr;
        localDevices = local->m_arrCabinets.GetSize();
        HMProjectTree_INFO* root = stationInCloud(u"K03")(nullptr);
        root->m_strID = local->m_strID;
        CloudNode(root, u"D3", u"0", u"K05");
        return root;
    };
    run(u"HMUpdate");
    EXPECT_EQ(localDevices, 2);
    EXPECT_TRUE(install.exists(projectPath("Station/D3/D3.prj")));
    EXPECT_NE(document("Hexmoor.xml").find("Name=\"D3\""), std::string::npos);
    EXPECT_TRUE(output.printed.EndsWith(u"项目Station更新完毕！\n"));
    EXPECT_EQ(queuedCommands(), std::vector<CString>{u"xmmanage\n"});
}
