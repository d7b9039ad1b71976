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
    std::vector<CString> bases;
    for (const char16_t* number : {u"A1(W2)", u"(W2)A1", u"A1(W2", u"A1)(W2", u"A(1)(2)", u""}) bases.push_back(QxCabinetNumberBase(number));
    // A ")" anywhere after the start will do.
    EXPECT_EQ(bases, (std::vector<CString>{u"A1", u"(W2)A1", u"A1(W2", u"A1)", u"A", u""}));
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
    EXPECT_EQ(rowsOf(list()), (std::vector<CString>{u"1#进线|A1|进线柜||800x2200", u"|A2|||"}));
    ASSERT_EQ(list().GetColumnCount(), 5);
    EXPECT_EQ(list().GetColumnHeading(1), u"柜编号");
    const int width = (list().GetWindowRect().Width() - 15) / 5 - 1;
    std::vector<std::pair<int, int>> kindsAndWidths;
    for (int column = 0; column < 5; ++column) kindsAndWidths.emplace_back(list().GetColumnInfo(column).nKind, list().GetColumnWidth(column));
    EXPECT_EQ(kindsAndWidths, (std::vector<std::pair<int, int>>{{QX_CELL_READONLY, width}, {QX_CELL_DROPDOWN, width},
                                                                {QX_CELL_TEXT, width}, {QX_CELL_TEXT, width}, {QX_CELL_TEXT, width}}));
    EXPECT_EQ(dialog.SendMessage(WM_ACAD_KEEPFOCUS), 1);
}

TEST_F(CabinetDialog, WithoutCircuitsTheDropDownHasOneEmptyEntryAndTypingFillsNothing) {
    project.add(u"dev", u"", u"kept");
    open();
    driver.click(0, 1);
    EXPECT_EQ(list().GetDropDownEditor()->GetEntries(), (CStringArray{u""}));
    driver.type(u"Z9");
    EXPECT_EQ(rowsOf(list()), std::vector<CString>{u"dev|Z9|kept||"});
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
    EXPECT_EQ(rowsOf(list()), (std::vector<CString>{u"dev|A1|进线|KYN28|10kV", u"other||untouched||"}));
}

TEST_F(CabinetDialog, TypedNumbersMatchTheBaseTrimmedAndExactly) {
    circuits.add(u"A1(W2)", u"use", u"type", u"volt");
    project.add(u"dev", u"", u"mine");
    open();
    driver.click(0, 1);
    // A change that matches nothing leaves what the last match filled.
    for (const auto& [typed, row] : std::vector<std::pair<CString, CString>>{{u"A1(W2)", u"dev|A1(W2)|mine||"}, {u"a1", u"dev|a1|mine||"},
                                                                            {u" A1 ", u"dev| A1 |use|type|volt"}, {u"A1x", u"dev|A1x|use|type|volt"}}) {
        driver.type(typed);
        EXPECT_EQ(rowsOf(list()), std::vector<CString>{row});
    }
}

TEST_F(CabinetDialog, OnlyTheCabinetNumberColumnFills) {
    circuits.add(u"A1", u"use", u"type", u"volt");
    project.add(u"dev");
    open();
    driver.click(0, 3);
    driver.type(u"A1");
    EXPECT_EQ(rowsOf(list()), std::vector<CString>{u"dev|||A1|"});
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
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1| A1 |n1||", u"d2|A2,A3|n2||600"}));
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
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1|A1|||", u"柜2| \t |||"}));
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
    // A service that lets the dialog go without an answer cancels it too.
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(dialogs.runs, 2);
    EXPECT_EQ(rowsOf(list()), std::vector<CString>{u"d1|A1|name||"});  // each run shows a fresh table
    EXPECT_EQ(project.devices(), std::vector<CString>{u"d1|A1|name||"});
}
