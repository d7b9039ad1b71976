// The cabinet dialog on the terminal.
#include "CabinetDialogTerminal.h"

#include "TerminalTable.h"
#include "support/Format.h"
#include "support/NumberText.h"
#include "support/PrintableText.h"
#include "support/TextHelpers.h"

#include <algorithm>
#include <ostream>

namespace {

// Reads a row or column number from 1 at `pos`; -1 when there is none (or it is absurdly long).
int readNumber(const CString& line, int& pos) {
    const int start = pos;
    while (pos < line.GetLength() && line[pos] >= u'0' && line[pos] <= u'9') ++pos;
    if (pos == start || pos - start > 6) return -1;
    return QxToInt(line.Mid(start, pos - start));
}

bool isKeyword(const CString& line, const char16_t* keyword) {
    CString word = line;
    return word.Trim().EqualsNoCase(keyword);
}

// Lines of the screen besides the rows: a blank, caption, label, heading, the window's note, the editor,
// the buttons and the prompt.
constexpr int kLinesAroundRows = 8;
constexpr int kFewestRowsShown = 3;

// The lines that show the table themselves: it is not shown again after them.
bool showsTheTable(const CString& line) {
    return isKeyword(line, u"show") || isKeyword(line, u"") || isKeyword(line, u"show all");
}

} // namespace

CabinetDialogTerminal::CabinetDialogTerminal(CSetCabInfo& dialog, DialogLineSource lines, std::ostream& screen,
                                             bool interactive, DialogScreenSize screenSize)
    : m_dialog(dialog), m_list(dialog.GetListCtrl()), m_lines(std::move(lines)), m_screen(screen),
      m_interactive(interactive), m_screenSize(screenSize) {}

void CabinetDialogTerminal::Run() {
    show();
    if (m_interactive) showHelp();
    while (!m_dialog.HasEnded()) {
        m_screen << std::flush;
        const CString prompt = m_interactive ? CString(QxCabInfoTemplate::kCaption) + u"> " : CString();
        const std::optional<CString> line = m_lines(prompt);
        if (!line) {
            m_dialog.OnCancel();
            break;
        }
        handle(*line);
        if (m_interactive && !m_dialog.HasEnded() && !showsTheTable(*line)) show();
    }
    m_screen << std::flush;
}

void CabinetDialogTerminal::handle(const CString& line) {
    if (isKeyword(line, u"ok")) return m_dialog.OnOK();
    if (isKeyword(line, u"cancel")) return m_dialog.OnCancel();
    if (isKeyword(line, u"enter")) return pressKey(VK_RETURN);
    if (isKeyword(line, u"up")) return pressKey(VK_UP);
    if (isKeyword(line, u"down")) return pressKey(VK_DOWN);
    if (isKeyword(line, u"show") || isKeyword(line, u"")) return show();
    if (isKeyword(line, u"show all")) return show(true);
    if (isKeyword(line, u"help") || isKeyword(line, u"?")) return showHelp();
    if (line.StartsWith(u"=")) return typeIntoOpenEditor(line.Mid(1));
    CString trimmed = line;
    trimmed.Trim();
    if (trimmed.Left(4).EqualsNoCase(u"pick") && trimmed.GetLength() > 4 && IsQxBlank(trimmed[4]))
        return pickEntry(trimmed.Mid(5));
    if (handleCellLine(line)) return;
    m_screen << "Not understood: \"" << QxPrintable(line) << "\" (HELP lists what the dialog takes)\n";
}

// "ROW COLUMN" clicks a cell; "ROW COLUMN TEXT" clicks it and types TEXT, which is the rest of the line
// after the one blank that follows the column, blanks included.
bool CabinetDialogTerminal::handleCellLine(const CString& line) {
    int pos = 0;
    while (pos < line.GetLength() && line[pos] == u' ') ++pos;
    const int row = readNumber(line, pos);
    if (row < 0 || pos >= line.GetLength() || line[pos] != u' ') return false;
    while (pos < line.GetLength() && line[pos] == u' ') ++pos;
    const int column = readNumber(line, pos);
    if (column < 0) return false;
    const bool hasText = pos < line.GetLength();
    if (hasText && line[pos] != u' ') return false;

    if (row < 1 || row > m_list.GetItemCount()) {
        m_screen << "There is no row " << row << ": the table has " << m_list.GetItemCount() << " rows.\n";
        return true;
    }
    if (column < 1 || column > m_list.GetColumnCount()) {
        m_screen << "There is no column " << column << ": the table has " << m_list.GetColumnCount() << " columns.\n";
        return true;
    }
    if (hasText && refusesText(line.Mid(pos + 1))) return true;
    clickCell(row - 1, column - 1);
    if (hasText) typeIntoOpenEditor(line.Mid(pos + 1));
    return true;
}

// Scrolls the row into view the way a person would, then clicks the middle of the cell.
void CabinetDialogTerminal::clickCell(int row, int column) {
    m_lastClickedRow = row;
    const int top = m_list.GetTopIndex();
    const int perPage = std::max(m_list.GetCountPerPage(), 1);
    if (row < top || row >= top + perPage) {
        m_list.OnVScroll(row - top);
        settle();
    }
    const CRect heading = m_list.GetHeaderItemRect(column);
    const int clientWidth = m_list.GetClientRect().Width();
    const int scrollX = m_list.GetScrollX();
    if (heading.left < scrollX || heading.right > scrollX + clientWidth) {
        m_list.OnHScroll(heading.left - scrollX);
        settle();
    }
    const CPoint position = m_list.GetItemPosition(row);
    const CPoint middle{position.x + (heading.left + heading.right) / 2, position.y + m_list.GetRowHeight() / 2};
    m_list.OnLButtonDown(middle);
    settle();
}

bool CabinetDialogTerminal::refusesText(const CString& text) const {
    if (!QxHasControlCharacter(text)) return false;
    m_screen << "A cell takes no control characters: \"" << QxPrintable(text) << "\" was not typed.\n";
    return true;
}

void CabinetDialogTerminal::typeIntoOpenEditor(const CString& text) {
    if (refusesText(text)) return;
    CMyListCtrlEdit* textEditor = m_list.GetTextEditor();
    CListCtrlComboBox* dropDown = m_list.GetDropDownEditor();
    if (textEditor && textEditor->IsWindowVisible()) textEditor->UserTypes(text);
    else if (dropDown && dropDown->IsWindowVisible()) dropDown->UserTypes(text);
    else m_screen << "No cell is being edited: this cell cannot be changed.\n";
    settle();
}

void CabinetDialogTerminal::pickEntry(const CString& number) {
    CListCtrlComboBox* dropDown = m_list.GetDropDownEditor();
    if (!dropDown || !dropDown->IsWindowVisible()) {
        m_screen << "No drop-down is open.\n";
        return;
    }
    CString digits = number;
    digits.Trim();
    const int entry = IsDigitString(digits) && digits.GetLength() <= 6 ? QxToInt(digits) : 0;
    if (dropDown->GetCount() == 0) {
        m_screen << "The drop-down has no entries; =TEXT still types a cabinet number.\n";
        return;
    }
    if (entry < 1 || entry > dropDown->GetCount()) {
        m_screen << "The drop-down has entries 1 to " << dropDown->GetCount() << ".\n";
        return;
    }
    dropDown->UserPicks(entry - 1);
    settle();
}

void CabinetDialogTerminal::pressKey(int keyCode) {
    CMyListCtrlEdit* textEditor = m_list.GetTextEditor();
    if (!textEditor || !textEditor->IsWindowVisible()) {
        m_screen << "No text editor is open.\n";
        return;
    }
    textEditor->UserPressesKey(keyCode);
    settle();
}

void CabinetDialogTerminal::settle() {
    m_dialog.DeliverPostedMessages();
    // A paint may itself ask for another (closing an editor changes a cell); a few rounds settle it.
    for (int round = 0; round < 4 && m_list.NeedsPaint(); ++round) m_list.OnPaint();
}

void CabinetDialogTerminal::show(bool allRows) const {
    m_screen << '\n' << CString(QxCabInfoTemplate::kCaption) << '\n' << CString(QxCabInfoTemplate::kListLabel) << '\n';
    showTable(allRows);
    showEditor();
    m_screen << '[' << CString(QxCabInfoTemplate::kOkText) << "] OK   [" << CString(QxCabInfoTemplate::kCancelText) << "] CANCEL\n";
}

// Every row for a script; at a terminal a window of rows around the open editor (or the row clicked
// last) when the table would scroll its heading away.
void CabinetDialogTerminal::showTable(bool allRows) const {
    const int rowCount = m_list.GetItemCount();
    std::vector<CString> headings{u"  #"};
    for (int column = 0; column < m_list.GetColumnCount(); ++column)
        headings.push_back(QxFormat(u"%d %s", column + 1, QxPrintable(m_list.GetColumnHeading(column))));
    TerminalTable table(std::move(headings));
    for (int row = 0; row < rowCount; ++row) {
        std::vector<CString> cells{QxFormat(u"%s%d", row == m_list.GetEditRow() ? u"> " : u"  ", row + 1)};
        for (int column = 0; column < m_list.GetColumnCount(); ++column)
            cells.push_back(QxPrintable(m_list.GetItemText(row, column)));
        table.addRow(std::move(cells));
    }
    const std::vector<int> widths = table.columnWidths(m_interactive ? m_screenSize.columns : 0);
    m_screen << table.headingLine(widths) << '\n';

    int first = 0;
    int count = rowCount;
    const int room = std::max(m_screenSize.rows - kLinesAroundRows, kFewestRowsShown);
    if (m_interactive && !allRows && m_screenSize.rows > 0 && rowCount > room) {
        const int focus = m_list.GetEditRow() >= 0 ? m_list.GetEditRow() : m_lastClickedRow;
        first = std::clamp(focus - room / 2, 0, rowCount - room);
        count = room;
    }
    for (int row = first; row < first + count; ++row) m_screen << table.rowLine(row, widths) << '\n';
    if (rowCount == 0) m_screen << "  (no devices)\n";
    if (count < rowCount)
        m_screen << "  rows " << (first + 1) << "–" << (first + count) << " of " << rowCount
                 << " (SHOW ALL prints every row)\n";
}

void CabinetDialogTerminal::showEditor() const {
    const CMyListCtrlEdit* textEditor = m_list.GetTextEditor();
    const CListCtrlComboBox* dropDown = m_list.GetDropDownEditor();
    const int row = m_list.GetEditRow();
    const int column = m_list.GetEditColumn();
    if (textEditor && textEditor->IsWindowVisible()) {
        m_screen << "Editing row " << (row + 1) << ", column " << (column + 1) << ": ["
                 << QxPrintable(textEditor->GetWindowText()) << "]\n";
    } else if (dropDown && dropDown->IsWindowVisible()) {
        m_screen << "Editing row " << (row + 1) << ", column " << (column + 1) << ": ["
                 << QxPrintable(dropDown->GetWindowText()) << "], entries:";
        for (int entry = 0; entry < dropDown->GetCount(); ++entry)
            m_screen << "  " << (entry + 1) << ") " << QxPrintable(dropDown->GetLBText(entry));
        if (dropDown->GetCount() == 0) m_screen << " none (=TEXT types a cabinet number)";
        m_screen << '\n';
    } else {
        const CStringArray choices = m_list.GetColumnCount() > 1 ? m_list.GetColumnInfo(1).arrChoices : CStringArray();
        m_screen << "Cabinet numbers offered:";
        for (const CString& choice : choices) m_screen << ' ' << QxPrintable(choice);
        m_screen << (choices.IsEmpty() ? " none\n" : "\n");
    }
}

void CabinetDialogTerminal::showHelp() const {
    m_screen << "  ROW COLUMN         click a cell: its editor opens\n"
                "  ROW COLUMN TEXT    click a cell and type TEXT (all after the one blank) into its editor\n"
                "  =TEXT              type TEXT into the open editor\n"
                "  PICK N             pick entry N of the open drop-down\n"
                "  ENTER, UP, DOWN    keys in the open text editor\n"
                "  SHOW, SHOW ALL     show the table (at a terminal, the rows around the open editor), every row\n"
                "  HELP               this help\n"
                "  OK, CANCEL         the dialog's buttons\n";
}
