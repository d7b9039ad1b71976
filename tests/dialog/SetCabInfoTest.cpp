// The cabinet dialog: its table, the cabinet numbers offered, the auto-fill, the checks on OK and what OK
// and Cancel leave in the devices.
#include "DialogTestSupport.h"
#include "common/ScriptedDialogs.h"

namespace {

class CabinetDialog : public CabinetDialogTest {
protected:
    // OnInitDialog as DoModal runs it, with the devices of `project`.
    void open() {
        dialog.m_pProjectTree = &project.root;
        dialog.OnInitDialog();
        driver.settle();
    }
    CSortedListCtrl& list() { return dialog.GetListCtrl(); }

    ListDriver driver{dialog.GetListCtrl(), dialog};
};

} // namespace

TEST(CabinetNumberBase, TheTextBeforeTheBracketUnlessTheNumberOpensWithOneOrNeverClosesIt) {
    std::vector<CString> bases;
    for (const char16_t* number : {u"A1(W2)", u"(W2)A1", u"A1(W2", u"A1)(W2", u"A(1)(2)", u")(", u""})
        bases.push_back(QxCabinetNumberBase(number));
    // A ")" anywhere after the start will do.
    EXPECT_EQ(bases, (std::vector<CString>{u"A1", u"(W2)A1", u"A1(W2", u"A1)", u"A", u")(", u""}));
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
    for (int column = 0; column < 5; ++column)
        kindsAndWidths.emplace_back(list().GetColumnInfo(column).nKind, list().GetColumnWidth(column));
    EXPECT_EQ(kindsAndWidths, (std::vector<std::pair<int, int>>{{QX_CELL_READONLY, width}, {QX_CELL_DROPDOWN, width},
                                                                {QX_CELL_TEXT, width}, {QX_CELL_TEXT, width},
                                                                {QX_CELL_TEXT, width}}));
    EXPECT_EQ(dialog.SendMessage(WM_ACAD_KEEPFOCUS), 1);
}

TEST_F(CabinetDialog, OffersEachCabinetNumberOnceAndFillsTheRowFromTheFirstCircuitOfTheNumberPickedOrTyped) {
    circuits.add(u"A1(W1)", u"进线", u"KYN28", u"10kV");
    circuits.add(u"B2(1)");
    circuits.add(u"A1(W2)", u"出线", u"XGN", u"0.4kV");
    circuits.add(u"(X)");
    circuits.add(u"b2");
    project.add(u"dev", u"", u"typed by hand");
    project.add(u"other", u"", u"mine");
    open();
    // In the order the circuits have them.
    EXPECT_EQ(list().GetColumnInfo(1).arrChoices, (CStringArray{u"A1", u"B2", u"(X)", u"b2"}));

    // A pick fills its row over what was typed there, and no other row.
    driver.click(0, 1);
    list().GetDropDownEditor()->UserPicks(0);
    driver.settle();
    EXPECT_EQ(rowsOf(list()), (std::vector<CString>{u"dev|A1|进线|KYN28|10kV", u"other||mine||"}));

    // A typed number matches the base, trimmed and exactly; a change that matches nothing leaves what the
    // last match filled.
    driver.click(1, 1);
    for (const auto& [typed, row] : std::vector<std::pair<CString, CString>>{
             {u"A1(W2)", u"other|A1(W2)|mine||"}, {u"a1", u"other|a1|mine||"},
             {u" A1 ", u"other| A1 |进线|KYN28|10kV"}, {u"A1x", u"other|A1x|进线|KYN28|10kV"}}) {
        driver.type(typed);
        EXPECT_EQ(rowsOf(list())[1], row);
    }

    // Only the cabinet number column fills.
    driver.click(0, 3);
    driver.type(u"B2");
    EXPECT_EQ(rowsOf(list())[0], u"dev|A1|进线|B2|10kV");
}

TEST_F(CabinetDialog, OkStopsAtTheFirstOffendingRowElseWritesTheFourFieldsAsTheyStandAndEnds) {
    project.add(u"d1", u" A1 ", u"n1");
    project.add(u"d2", u"A.2", u"n2");
    project.add(u"柜3", u" \t ");
    open();
    driver.click(0, 3);
    driver.type(u"changed");
    // A failed check names the first offending row, keeps the dialog open and changes no device.
    dialog.OnOK();
    list().SetItemText(1, 1, u"A2,A3");
    dialog.OnOK();
    EXPECT_FALSE(dialog.HasEnded());
    EXPECT_EQ(boxTexts(), (std::vector<CString>{u"设备 d2 柜编号属性有非法字符存在！",
                                                u"设备 柜3 柜编号属性为空，无法作为屏柜提交！"}));
    EXPECT_EQ(output.boxes[0].caption, u"Corvane");
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1| A1 |n1||", u"d2|A.2|n2||", u"柜3| \t |||"}));

    list().SetItemText(2, 1, u"K3");
    driver.click(1, 4);
    driver.type(u"600");  // the editor is still open at OK: the cell holds the text already
    dialog.OnOK();
    EXPECT_TRUE(dialog.HasEnded());
    EXPECT_EQ(output.boxes.size(), 2u);
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1| A1 |n1|changed|", u"d2|A2,A3|n2||600", u"柜3|K3|||"}));
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
