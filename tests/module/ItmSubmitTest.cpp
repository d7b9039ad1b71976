// HMItmSubmit on the assembly tests' substation, laid out as a person draws a project that the cloud does
// not know yet, with the cabinet dialog answered by a script: against a scripted cloud, and against the
// embedded centre shared by two install folders.
#include "ProjectCommandFixture.h"
#include "common/ScriptedDialogs.h"
#include "common/ScriptedPrompts.h"
#include "platform/InstallPath.h"
#include "module/commands/ProjectTrees.h"
#include "project/tree/FoldersToTree.h"
#include "support/dialog/SetCabInfo.h"

namespace {

CSetCabInfo& cabinetDialog(CAdUiBaseDialog& shown) { return dynamic_cast<CSetCabInfo&>(shown); }

// The person names D1's cabinet and gives its size, then presses OK. The dialog runs on the module's resources.
void nameAndSizeThenOk(CAdUiBaseDialog& shown) {
    EXPECT_NE(acDocManagerPtr()->currentResourceHandle(), nullptr);
    CSortedListCtrl& list = cabinetDialog(shown).GetListCtrl();
    list.SetItemText(0, 2, u"进线柜");
    list.SetItemText(0, 4, u"800x600");
    shown.OnOK();
}
// Edits, then cancels.
void editThenCancel(CAdUiBaseDialog& shown) {
    cabinetDialog(shown).GetListCtrl().SetItemText(0, 1, u"K09");
    cabinetDialog(shown).GetListCtrl().SetItemText(0, 2, u"edited");
    shown.OnCancel();
}
// A number the check refuses keeps the dialog open; then another cabinet, whose columns after the number are
// not checked, neither for "." nor when empty.
void badNumberThenAnotherCabinet(CAdUiBaseDialog& shown) {
    CSortedListCtrl& list = cabinetDialog(shown).GetListCtrl();
    list.SetItemText(0, 1, u"K.02");
    shown.OnOK();
    EXPECT_FALSE(shown.HasEnded());
    list.SetItemText(0, 1, u"K03");
    list.SetItemText(0, 2, u"");
    list.SetItemText(0, 3, u"KYN.28");
    shown.OnOK();
}

} // namespace

class ItmSubmit : public ProjectCommandTest {
protected:
    void SetUp() override {
        ProjectCommandTest::SetUp();
        layOutStation();
        layOutDevice("D1", "K02");
        SetRecentProject(stationFile());
    }

    void answerDialogWithOk() { dialogs.actions.push_back(nameAndSizeThenOk); }
    // The project as the folders give it now.
    LocalTree readBack() {
        LocalTree tree = std::make_unique<HMProjectTree_INFO>();
        tree->m_strName = u"Station";
        tree->m_strPath = projects() + u"Station\\";
        BuildTreeFromFolders(stationFile(), tree.get());
        return tree;
    }
    bool hasDocument(const std::string& relative) const { return install.exists(projectPath("Station/" + relative)); }
    // What the person and the project see after the command, as one line: dialogs shown, submits made, the
    // boxes, which nodes have a document, the cabinet notes the folders give, the dialog resources still
    // held and the check's flag.
    std::string outcome() {
        std::string text = "dialogs=" + std::to_string(dialogs.runs) + " submits=" + std::to_string(cloud().submitItmCalls) + " boxes=";
        for (const auto& box : output.boxes) text += box.text.ToUtf8() + "|";
        text += " documents=";
        for (const std::string document : {"Hexmoor.xml", "D1/Hexmoor.xml", "D2/Hexmoor.xml"})
            if (hasDocument(document)) text += document + ",";
        return text + " notes=" + cabinetsText(*readBack()) + " held=" +
               std::to_string(acDocManagerPtr()->resourceHandleDepth()) + " flag=" + std::to_string(g_bBomCheckFailed);
    }

    ScriptedDialogs dialogs;
};

TEST_F(ItmSubmit, WithoutACurrentProjectOrWithoutDevicesItSaysSoAndShowsNoDialog) {
    install.writeFile(projectPath("Lone/Lone.itm"), "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
    install.makeFolder(projectPath("Lone/Empty"));
    for (const CString& recent : {CString(), projects() + u"Lone\\Lone.itm"}) {
        SetRecentProject(recent);
        run(u"HMItmSubmit");
    }
    EXPECT_EQ(outcome(), "dialogs=0 submits=0 boxes=本地项目不存在，请先创建项目！|当前项目没有屏柜，请选创建屏柜再提交！| "
                         "documents= notes=D1:K02///; held=0 flag=0");
    EXPECT_EQ(output.boxes[0].caption, u"Corvane");
}

struct ItmSubmitCase {
    const char* name;
    const char* secondCabinets;  // D2's cabinet numbers; null: no D2
    ScriptedDialogs::Action dialog;
    bool accepted;     // the cloud's answer; either way it marks the root and D1 as its own
    const char* sent;  // what the cloud was given, "" when nothing
    const char* outcome;
    friend void PrintTo(const ItmSubmitCase& row, std::ostream* out) { *out << row.name; }
};

class ItmSubmitAnswers : public ItmSubmit, public ::testing::WithParamInterface<ItmSubmitCase> {};

TEST_P(ItmSubmitAnswers, WhatIsSentAndWrittenFollowsTheDialogAndTheCloudsAnswer) {
    const ItmSubmitCase& row = GetParam();
    if (row.secondCabinets) layOutDevice("D2", row.secondCabinets);
    dialogs.actions.push_back(row.dialog);
    std::string sent;
    cloud().submitItm = [&](HMProjectTree_INFO* tree) {
        // The root as it is, every device with the dialog's fields, D1's rows, and the dialog still standing.
        HMProjectTree_INFO* d1 = tree->m_arrCabinets[0];
        sent = (tree->m_strName + u"|" + tree->m_strType + u" ").ToUtf8() + cabinetsText(*tree) + " P:" +
               rowsText(d1->m_arrPrimaryBom) + " S:" + rowsText(d1->m_arrSecondaryBom) +
               " held=" + std::to_string(acDocManagerPtr()->resourceHandleDepth());
        tree->m_strID = u"p-1";
        tree->m_bChanged = true;
        d1->m_strID = u"c-1";
        d1->m_bChanged = true;
        return row.accepted;
    };
    run(u"HMItmSubmit");
    EXPECT_EQ(sent, row.sent);
    EXPECT_EQ(outcome(), row.outcome);
}

// What the dialog gave reaches the .prj, for a device the cloud did not mark as well, and whatever the cloud
// answers: the merge runs before the submit. The merge follows the dialog: the rows are those of the cabinet
// chosen there, not of the .prj's.
INSTANTIATE_TEST_SUITE_P(Rows, ItmSubmitAnswers, ::testing::Values(
    ItmSubmitCase{"OkSendsTheMergedDevicesAndSavesTheMarkedNodes", "K03", nameAndSizeThenOk, true,
        "Station| D1:K02/进线柜//800x600;D2:K03///; P:N1/X1/3; S:继电器/RX-1/2;断路器/NSX100/1; held=1",
        "dialogs=1 submits=1 boxes=Corvane新建项目提交成功！| documents=Hexmoor.xml,D1/Hexmoor.xml, "
        "notes=D1:K02/进线柜//800x600;D2:K03///; held=0 flag=0"},
    ItmSubmitCase{"CancelSendsNothingAndChangesNoPrj", nullptr, editThenCancel, true, "",
        "dialogs=1 submits=0 boxes= documents= notes=D1:K02///; held=0 flag=0"},
    ItmSubmitCase{"AFailedDialogCheckKeepsTheDialogOpenUntilTheNumberIsRight", nullptr, badNumberThenAnotherCabinet,
        true,
        "Station| D1:K03//KYN.28/; P:指示灯/AD16/1; S:继电器/RX-1/2;断路器/NSX100/1; held=1",
        "dialogs=1 submits=1 boxes=设备 D1 柜编号属性有非法字符存在！|Corvane新建项目提交成功！| "
        "documents=Hexmoor.xml,D1/Hexmoor.xml, notes=D1:K03//KYN.28/; held=0 flag=0"},
    ItmSubmitCase{"ARefusedSubmitWritesNoDocumentBackButKeepsTheDialogsNotes", nullptr, nameAndSizeThenOk, false,
        "Station| D1:K02/进线柜//800x600; P:N1/X1/3; S:继电器/RX-1/2;断路器/NSX100/1; held=1",
        "dialogs=1 submits=1 boxes=Corvane新建项目提交失败，可能是服务器上已有同名项目或网络连接故障！| "
        "documents= notes=D1:K02/进线柜//800x600; held=0 flag=0"},
    // The check's own message, nothing more; the flag is lowered for the next command.
    ItmSubmitCase{"AFailedCabinetCheckSendsNothingAndClearsTheFlag", "K03,K04", nameAndSizeThenOk, true, "",
        "dialogs=1 submits=0 boxes=屏柜 K03 和屏柜 K04 内容应该一致，但是现在不一致，一次元件内容不一样，请检查一次系统图。| "
        "documents= notes=D1:K02/进线柜//800x600;D2:K03,K04///; held=0 flag=0"}),
    [](const auto& info) { return std::string(info.param.name); });

class ItmSubmitToCentre : public ItmSubmit {
protected:
    void SetUp() override {
        ItmSubmit::SetUp();
        useEmbeddedCentre();
    }
    void TearDown() override {
        ::unsetenv("HEXMOOR_STORE");
        ItmSubmit::TearDown();
    }

    // Moves the session to a second install folder that shares the first one's centre.
    void switchToSecondInstall() {
        const std::string store = install.native() + "/LocalData/hexmoor.db";
        HMEndSession();
        ::setenv("HEXMOOR_STORE", store.c_str(), 1);
        SetCorvaneInstallDirOverride(second.logic());
        second.makeFolder("Data");
        second.makeFolder("My Projects");
        ASSERT_TRUE(LayOutTemplateDrawing(second.logic()));
        QxLSetLoginInfo_Varnholt_CV201301(u"acme", u"ann", u"secret", u"localhost:8585");
        HMStartSession();
    }
    void switchToFirstInstall() {
        HMEndSession();
        ::unsetenv("HEXMOOR_STORE");
        SetCorvaneInstallDirOverride(install.logic());
        HMStartSession();
    }

    TempFolder second;
};

// The project then stands in the centre: HMBomSubmit takes it from its documents, and sending it as new
// once more is refused with the documents left as the first submit wrote them. A second install that shares
// the centre makes the project from it and later takes the first one's change.
TEST_F(ItmSubmitToCentre, TheCentreHoldsTheProjectAndASecondInstallMakesItAndLaterTakesTheChange) {
    answerDialogWithOk();
    run(u"HMItmSubmit");
    EXPECT_EQ(rowsText(centreRows(u"K02")), "N1/X1/3;继电器/RX-1/2;断路器/NSX100/1;");
    run(u"HMBomSubmit");
    run(u"HMBomCmp");  // drawings and centre agree now
    EXPECT_TRUE(output.printed.Contains(u"0 differ from the centre"));
    const std::string document = install.readFile(projectPath("Station/D1/Hexmoor.xml"));
    answerDialogWithOk();
    run(u"HMItmSubmit");
    EXPECT_EQ(outcome(), "dialogs=2 submits=0 boxes=Corvane新建项目提交成功！|Corvane新建项目提交失败，可能是服务器上已有同名项目或网络连接故障！| "
                         "documents=Hexmoor.xml,D1/Hexmoor.xml, notes=D1:K02/进线柜//800x600; held=0 flag=0");
    EXPECT_EQ(install.readFile(projectPath("Station/D1/Hexmoor.xml")), document);

    switchToSecondInstall();
    ScriptedPrompts prompts;
    prompts.answers.push_back(u"0");  // the centre's one project
    run(u"HMXmCreate");
    const std::string copy = "My Projects/Station/";
    EXPECT_NE(second.readFile(copy + "D1/Hexmoor.xml").find("F_Name=\"N1\""), std::string::npos);
    EXPECT_EQ(queuedCommands(), std::vector<CString>{u"xmmanage\n"});

    // The first install's device gains a drawing and sends again.
    switchToFirstInstall();
    install.writeFile(projectPath("Station/D1/B.dwg"), AssemblyDrawing("device_b.dxf"));
    run(u"HMBomSubmit");
    EXPECT_NE(rowsText(centreRows(u"K02")).find("继电器/RX-2/1;"), std::string::npos);

    switchToSecondInstall();
    EXPECT_EQ(second.readFile(copy + "D1/Hexmoor.xml").find("RX-2"), std::string::npos);
    run(u"HMUpdate");
    EXPECT_TRUE(output.printed.Contains(u"项目Station更新完毕！"));
    EXPECT_NE(second.readFile(copy + "D1/Hexmoor.xml").find("RX-2"), std::string::npos);
    EXPECT_TRUE(second.exists(copy + "D1/图纸.DWG"));
}
