// The cabinet dialog on the terminal: shows its table and drives the dialog's list through the events a
// window would get (clicks on cells, typing, keys, paints), reading one line per action.
#pragma once

#include "support/dialog/SetCabInfo.h"

#include <functional>
#include <iosfwd>
#include <optional>

// One answer line without its line end; nullopt at the end of input.
using DialogLineSource = std::function<std::optional<CString>()>;

class CabinetDialogTerminal {
public:
    // `interactive`: a person at a terminal, who gets a prompt and sees the table after each action.
    CabinetDialogTerminal(CSetCabInfo& dialog, DialogLineSource lines, std::ostream& screen, bool interactive);

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
    void show() const;
    void showHelp() const;

    CSetCabInfo& m_dialog;
    CSortedListCtrl& m_list;
    DialogLineSource m_lines;
    std::ostream& m_screen;
    bool m_interactive;
};
