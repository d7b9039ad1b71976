// The cabinet dialog: its table, the cabinet numbers offered, the auto-fill, the checks on OK and what OK
// and Cancel leave in the devices.
#include "DialogTestSupport.h"
#include "common/CapturedOutput.h"
#include "common/ScriptedDialogs.h"
#include "support/dialog/SetCabInfo.h"

#include <gtest/gtest.h>

namespace {

class CabinetDialog : public ::testing::Test {
protected:
    // OnInitDialog as DoModal runs it, with the devices of `project`.
    void open() {
        dialog.m_pProjectTree = &project.root;
        dialog.OnInitDialog();
        driver.settle();
    }
    CSortedListCtrl& list() { return dialog.GetListCtrl(); }

    ScannedCircuits circuits;
    ProjectWithDevices project;
    CapturedOutput output;
    CSetCabInfo dialog;
    ListDriver driver{dialog.GetListCtrl(), dialog};
};

} // namespace

TEST(CabinetNumberBase, TheTextBeforeTheBracketUnlessTheNumberOpensWithOneOrNeverClosesIt) {
    EXPECT_EQ(QxCabinetNumberBase(u"A1(W2)"), u"A1");
    EXPECT_EQ(QxCabinetNumberBase(u"(W2)A1"), u"(W2)A1");
    EXPECT_EQ(QxCabinetNumberBase(u"A1(W2"), u"A1(W2");
    EXPECT_EQ(QxCabinetNumberBase(u"A1)(W2"), u"A1)");  // a ")" anywhere after the start will do
    EXPECT_EQ(QxCabinetNumberBase(u"A(1)(2)"), u"A");
    EXPECT_EQ(QxCabinetNumberBase(u""), u"");
}

TEST_F(CabinetDialog, OffersEachCabinetNumberOnceInTheOrderTheCircuitsHaveThem) {
    circuits.add(u"B2(1)");
    circuits.add(u"A1(W2)");
    circuits.add(u"B2(2)");
    circuits.add(u"(X)");
    circuits.add(u"b2");
    open();
    EXPECT_EQ(list().GetColumnInfo(1).arrChoices, (CStringArray{u"B2", u"A1", u"(X)", u"b2"}));
}

TEST_F(CabinetDialog, ShowsOneRowPerDeviceWithItsCabinetFieldsAndTheTemplatesColumns) {
    project.add(u"1#进线", u"A1", u"进线柜").m_strCirSize = u"800x2200";
    project.add(u"", u"A2");
    open();
    ASSERT_EQ(list().GetItemCount(), 2);
    EXPECT_EQ(list().GetItemText(0, 0), u"1#进线");
    EXPECT_EQ(list().GetItemText(0, 2), u"进线柜");
    EXPECT_EQ(list().GetItemText(0, 4), u"800x2200");
    EXPECT_EQ(list().GetItemText(1, 1), u"A2");
    ASSERT_EQ(list().GetColumnCount(), 5);
    EXPECT_EQ(list().GetColumnHeading(1), u"柜编号");
    EXPECT_EQ(list().GetColumnInfo(0).nKind, QX_CELL_READONLY);
    EXPECT_EQ(list().GetColumnInfo(1).nKind, QX_CELL_DROPDOWN);
    EXPECT_EQ(list().GetColumnInfo(4).nKind, QX_CELL_TEXT);
    const int width = (list().GetWindowRect().Width() - 15) / 5 - 1;
    for (int column = 0; column < 5; ++column) EXPECT_EQ(list().GetColumnWidth(column), width);
    EXPECT_EQ(dialog.SendMessage(WM_ACAD_KEEPFOCUS), 1);
}

TEST_F(CabinetDialog, WithoutCircuitsTheDropDownHasOneEmptyEntryAndTypingFillsNothing) {
    project.add(u"dev", u"", u"kept");
    open();
    driver.click(0, 1);
    EXPECT_EQ(list().GetDropDownEditor()->GetEntries(), (CStringArray{u""}));
    driver.type(u"Z9");
    EXPECT_EQ(list().GetItemText(0, 1), u"Z9");
    EXPECT_EQ(list().GetItemText(0, 2), u"kept");
}

TEST_F(CabinetDialog, PickingACabinetNumberFillsTheRowFromItsFirstCircuitOverWhatWasTyped) {
    circuits.add(u"A1(W1)", u"进线", u"KYN28", u"10kV");
    circuits.add(u"A1(W2)", u"出线", u"XGN", u"0.4kV");
    project.add(u"dev", u"", u"typed by hand");
    project.add(u"other", u"", u"untouched");
    open();
    driver.click(0, 1);
    list().GetDropDownEditor()->UserPicks(0);
    driver.settle();
    EXPECT_EQ(list().GetItemText(0, 1), u"A1");
    EXPECT_EQ(list().GetItemText(0, 2), u"进线");
    EXPECT_EQ(list().GetItemText(0, 3), u"KYN28");
    EXPECT_EQ(list().GetItemText(0, 4), u"10kV");
    EXPECT_EQ(list().GetItemText(1, 2), u"untouched");
}

TEST_F(CabinetDialog, TypedNumbersMatchTheBaseTrimmedAndExactly) {
    circuits.add(u"A1(W2)", u"use", u"type", u"volt");
    project.add(u"dev", u"", u"mine");
    open();
    driver.click(0, 1);
    driver.type(u"A1(W2)");
    EXPECT_EQ(list().GetItemText(0, 2), u"mine");
    driver.type(u"a1");
    EXPECT_EQ(list().GetItemText(0, 2), u"mine");
    driver.type(u" A1 ");
    EXPECT_EQ(list().GetItemText(0, 1), u" A1 ");
    EXPECT_EQ(list().GetItemText(0, 2), u"use");

    // A change that matches nothing leaves what the last match filled.
    driver.type(u"A1x");
    EXPECT_EQ(list().GetItemText(0, 2), u"use");
}

TEST_F(CabinetDialog, OnlyTheCabinetNumberColumnFills) {
    circuits.add(u"A1", u"use", u"type", u"volt");
    project.add(u"dev");
    open();
    driver.click(0, 3);
    driver.type(u"A1");
    EXPECT_EQ(list().GetItemText(0, 2), u"");
    EXPECT_EQ(list().GetItemText(0, 4), u"");
}

TEST_F(CabinetDialog, OkWritesTheFourFieldsAsTheyStandAndEnds) {
    project.add(u"d1", u" A1 ", u"n1");
    project.add(u"d2", u"A2,A3", u"n2");
    open();
    driver.click(1, 4);
    driver.type(u"600");  // the editor is still open at OK: the cell holds the text already
    dialog.OnOK();
    EXPECT_TRUE(dialog.HasEnded());
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(project.device(0).m_strCirNo, u" A1 ");
    EXPECT_EQ(project.device(1).m_strCirNo, u"A2,A3");
    EXPECT_EQ(project.device(1).m_strCirName, u"n2");
    EXPECT_EQ(project.device(1).m_strCirSize, u"600");
    EXPECT_EQ(project.device(0).m_strName, u"d1");
}

TEST_F(CabinetDialog, ABlankCabinetNumberKeepsTheDialogOpenAndChangesNoDevice) {
    project.add(u"d1", u"A1");
    project.add(u"柜2", u" \t ");
    open();
    driver.click(0, 3);
    driver.type(u"changed");
    dialog.OnOK();
    EXPECT_FALSE(dialog.HasEnded());
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, u"设备 柜2 柜编号属性为空，无法作为屏柜提交！");
    EXPECT_EQ(output.boxes[0].caption, u"Corvane");
    EXPECT_EQ(project.device(0).m_strCirType, u"");
}

TEST_F(CabinetDialog, TheFirstOffendingRowDecidesTheMessage) {
    project.add(u"d1", u"A1");
    project.add(u"d2", u"A.2");
    project.add(u"", u"");
    open();
    dialog.OnOK();
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, u"设备 d2 柜编号属性有非法字符存在！");

    list().SetItemText(1, 1, u"A2");
    dialog.OnOK();
    ASSERT_EQ(output.boxes.size(), 2u);
    EXPECT_EQ(output.boxes[1].text, u"设备  柜编号属性为空，无法作为屏柜提交！");
    EXPECT_FALSE(dialog.HasEnded());
}

TEST_F(CabinetDialog, WithoutAProjectTheTableIsEmptyAndOkEnds) {
    dialog.OnInitDialog();
    EXPECT_EQ(list().GetItemCount(), 0);
    dialog.OnOK();
    EXPECT_TRUE(dialog.HasEnded());
}

TEST_F(CabinetDialog, RunThroughTheHostCancelledItChangesNothing) {
    project.add(u"d1", u"A1", u"name");
    dialog.m_pProjectTree = &project.root;
    ScriptedDialogs dialogs;
    dialogs.actions.push_back([](CAdUiBaseDialog& shown) {
        auto& cabinets = dynamic_cast<CSetCabInfo&>(shown);
        cabinets.GetListCtrl().SetItemText(0, 2, u"edited");
        cabinets.OnCancel();
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(project.device(0).m_strCirName, u"name");

    // A service that lets the dialog go without an answer cancels it too.
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialogs.runs, 2);
    EXPECT_EQ(list().GetItemCount(), 1);  // each run shows a fresh table
    EXPECT_EQ(list().GetColumnCount(), 5);
    EXPECT_EQ(project.device(0).m_strCirName, u"name");
}
