// The cabinet dialog on qxcad's terminal, answered by lines as a script gives them.
#include "apps/qxcad/CabinetDialogTerminal.h"
#include "DialogTestSupport.h"
#include "common/ScriptedDialogs.h"

#include <deque>
#include <sstream>

namespace {

class TerminalDialog : public CabinetDialogTest {
protected:
    // Runs the dialog modally, as the host does, on the given lines; the end of the list is the end of
    // input. The prompt goes to the screen, as the line reader shows it.
    void run(std::deque<CString> lines, bool interactive = false, DialogScreenSize size = {}) {
        dialog.m_pProjectTree = &project.root;
        ScriptedDialogs dialogs;
        dialogs.actions.push_back([&](CAdUiBaseDialog&) {
            CabinetDialogTerminal terminal(
                dialog,
                [&](const CString& prompt) -> std::optional<CString> {
                    screen << prompt;
                    if (lines.empty()) return std::nullopt;
                    CString line = lines.front();
                    lines.pop_front();
                    return line;
                },
                screen, interactive, size);
            terminal.Run();
        });
        dialog.DoModal();
    }
    std::string shown() const { return screen.str(); }
    // Each part must be on the screen.
    void expectShown(std::initializer_list<std::string> parts) const {
        for (const std::string& part : parts)
            EXPECT_NE(shown().find(part), std::string::npos) << part << " not in:\n" << shown();
    }
    std::ostringstream screen;
};

} // namespace

TEST_F(TerminalDialog, ShowsTheTableTypesPicksFromTheOpenDropDownThenWritesBackOnOk) {
    circuits.add(u"A1(W1)", u"进线", u"KYN28", u"10kV");
    circuits.add(u"B1", u"u2");
    project.add(u"1#进线");
    project.add(u"2#出线", u"old", u"name");
    run({u"1 2 A1", u"2 2", u"PICK 2", u"PICK 3", u"1 4", u"=typed", u"ok"});
    EXPECT_TRUE(dialog.HasEnded());
    expectShown({"屏柜属性设置", "2 柜编号", "1#进线", "Cabinet numbers offered: A1", "The drop-down has entries 1 to 2."});
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"1#进线|A1|进线|typed|10kV", u"2#出线|B1|u2||"}));
}

TEST_F(TerminalDialog, ScriptLinesEditTellWhatTheyCannotDoAndWalkTheCellsUntilOkPasses) {
    project.add(u"d1", u"", u"name");
    project.add(u"d2", u"A.1");
    run({u"OK",  // refused: d1 has no cabinet number; the dialog stays open for the next lines
         u"3 2 X", u"0 2 X", u"1 6 X", u"1 1 renamed", u"what",
         u"1 2  A1(x) ", u"1 3 ",  // the text is all after the one blank behind the column
         u"Ok",                    // refused: d2's number holds a "."
         u"2 2 A2", u"2 5 big", u"ENTER", u"=lost", u"DOWN",  // enter on the last cell ends the edit
         // Enter walks down the column, then on to the top of the next one; up goes back.
         u"1 4 t1", u"ENTER", u"=t2", u"DOWN", u"=s1", u"UP", u"=t2b", u"oK"});
    EXPECT_EQ(output.boxes.size(), 2u);
    expectShown({"There is no row 3: the table has 2 rows.", "There is no row 0", "There is no column 6",
                 "this cell cannot be changed", "No text editor is open.", "Not understood: \"what\""});
    EXPECT_TRUE(dialog.HasEnded());
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1| A1(x) ||t1|s1", u"d2|A2||t2b|big"}));
}

TEST_F(TerminalDialog, OddLinesAndBracketedNumbersNeverBreakTheDialogAndTheEndOfInputCancelsIt) {
    for (const char16_t* number : {u"(", u")(", u"A(()", u""}) circuits.add(number);
    project.add(u"d1", u"A1", u"name");
    project.add(u"(", u")");
    run({u"", u"PICK", u"PICK x", u"=", u"1", u"1 ", u" 1 2 ()", u"2 2\t(", u"99999999 2 x", u"1 2 A(", u"\x01\x02",
         u"pick 1", u"1 2", u"PICK 4", u"UP", u"2 3 edited"});
    EXPECT_TRUE(dialog.HasEnded());
    EXPECT_EQ(rowsOf(dialog.GetListCtrl()), (std::vector<CString>{u"d1||||", u"(|)|edited||"}));
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1|A1|name||", u"(|)|||"}));
    // So does CANCEL, in any case.
    run({u"1 3 edited", u"CANCEL", u"OK"});
    EXPECT_EQ(project.devices(), (std::vector<CString>{u"d1|A1|name||", u"(|)|||"}));
}

TEST_F(TerminalDialog, ColumnsLineUpByDisplayWidthAndAtATerminalLongCellsAreCutInTheViewOnly) {
    const CString longName = u"1#进线柜的一个很长很长很长很长的名字";
    project.add(longName, u"K1", u"进线柜");
    project.add(u"K2", u"K2", u"feeder");
    project.add(u"计量", u"K3");
    run({u"2 3 馈线", u"cancel"});
    expectShown({"\n  # | 1 设备名称                           | 2 柜编号 | 3 柜名称 | 4 柜型号 | 5 柜体尺寸\n"
                 "  1 | 1#进线柜的一个很长很长很长很长的名字 | K1       | 进线柜   |          | \n"
                 "  2 | K2                                   | K2       | feeder   |          | \n"
                 "  3 | 计量                                 | K3       |          |          | \n"});
    // A terminal of 60 columns.
    screen.str("");
    run({u"2 3 馈线", u"cancel"}, true, {60, 40});
    expectShown({"\n  # | 1 设备名… | 2 柜编号 | 3 柜名称 | 4 柜型号 | 5 柜体… \n"
                 "  1 | 1#进线柜… | K1       | 进线柜   |          | \n"
                 "  2 | K2        | K2       | feeder   |          | \n"
                 "  3 | 计量      | K3       |          |          | \n"});
    EXPECT_EQ(project.device(0).m_strName, longName);
}

TEST_F(TerminalDialog, AtATerminalThePersonIsPromptedAndALongTableShowsTheRowsAroundTheOpenEditor) {
    circuits.add(u"A1");
    for (int i = 1; i <= 200; ++i) project.add(CString("D" + std::to_string(i)), CString("N" + std::to_string(i)));
    run({u"1 2", u"150 3 x", u"SHOW ALL", u"cancel"}, true, {100, 28});
    expectShown({"rows 1–20 of 200 (SHOW ALL prints every row)", "rows 140–159 of 200", "\n> 150 | D150 ",
                 "屏柜属性设置> ", "Editing row 1, column 2: [N1], entries:  1) ", "PICK N"});
    const std::string all = shown().substr(shown().rfind("\n  #   | "));
    EXPECT_NE(all.find("\n  1   | D1 "), std::string::npos);
    EXPECT_NE(all.find("\n  200 | D200 "), std::string::npos);

    // A script sees the table once, whole, and reaches every row by scrolling.
    screen.str("");
    run({u"200 3 far", u"1 3 near", u"150 2 mid", u"OK"}, false, {100, 28});
    EXPECT_EQ(shown().find("rows "), std::string::npos);
    EXPECT_NE(shown().find("\n  200 | D200 "), std::string::npos);
    const std::vector<CString> devices = project.devices();
    EXPECT_EQ((std::vector<CString>{devices[0], devices[149], devices[198], devices[199]}),
              (std::vector<CString>{u"D1|N1|near||", u"D150|mid|||", u"D199|N199|||", u"D200|N200|far||"}));
}

TEST_F(TerminalDialog, ControlCharactersAreRefusedInCellsAndShownEscaped) {
    project.add(u"d\x1b[2J", u"K\x07");
    run({u"1 3 a\x1b[Db", u"1 3", u"=x\ry", u"\x1b]0;title\x07", u"UP", u"PICK 1", u"=K9", u"1 3 kept", u"OK"});
    EXPECT_EQ(project.devices(), std::vector<CString>{u"d\x1b[2J|K9|kept||"});
    EXPECT_EQ(shown().find_first_of("\x1b\x07\r"), std::string::npos);
    // UP from the top of column 3 lands in the drop-down of column 2, which no click has filled.
    expectShown({"A cell takes no control characters: \"a\\x1b[Db\" was not typed.", "\"x\\x0dy\" was not typed.",
                 "Not understood: \"\\x1b]0;title\\x07\"", "d\\x1b[2J",
                 "The drop-down has no entries; =TEXT still types a cabinet number."});
}
