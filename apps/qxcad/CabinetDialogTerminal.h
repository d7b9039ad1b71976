// The cabinet dialog on the terminal: shows its table and drives the dialog's list through the events a
// window would get (clicks on cells, typing, keys, paints), reading one line per action.
#pragma once

#include "support/dialog/SetCabInfo.h"

#include <functional>
#include <iosfwd>
#include <optional>

// One answer line without its line end, read after the prompt given (empty for a script); nullopt at the
// end of input or when the person gives up.
using DialogLineSource = std::function<std::optional<CString>(const CString& prompt)>;

// The terminal's size in columns and lines; 0 where it is not known (the table is then shown whole).
struct DialogScreenSize {
    int columns = 0;
    int rows = 0;
};

class CabinetDialogTerminal {
public:
    // `interactive`: a person at a terminal, who gets a prompt and sees the table after each action; when
    // the table is longer than the screen, a window of rows around the open editor.
    CabinetDialogTerminal(CSetCabInfo& dialog, DialogLineSource lines, std::ostream& screen, bool interactive,
                          DialogScreenSize screenSize = {});

    // Until the dialog ends: OK that passes the checks, CANCEL, or the end of input (which cancels).
    void Run();

private:
    void handle(const CString& line);
    bool handleCellLine(const CString& line);
    void clickCell(int row, int column);
    void typeIntoOpenEditor(const CString& text);
    void pickEntry(const CString& number);
    void pressKey(int keyCode);
    // What the window system does after each event: posted messages, then the paint that was asked for.
    void settle();
    // Text typed into a cell must be printable, so that the .prj, the centre and Hexmoor.xml hold the same.
    bool refusesText(const CString& text) const;
    void show(bool allRows = false) const;
    void showTable(bool allRows) const;
    void showEditor() const;
    void showHelp() const;

    CSetCabInfo& m_dialog;
    CSortedListCtrl& m_list;
    DialogLineSource m_lines;
    std::ostream& m_screen;
    bool m_interactive;
    DialogScreenSize m_screenSize;
    int m_lastClickedRow = 0;
};
