// A table laid out for the terminal: columns padded by display width (a Chinese character takes two
// columns), cells cut with "…" when the table must fit the terminal's width. Only the view is cut.
#pragma once

#include "support/CString.h"

#include <vector>

class TerminalTable {
public:
    // Cells are shown as given: escape them first.
    explicit TerminalTable(std::vector<CString> headings);
    void addRow(std::vector<CString> cells);

    // Widths of the columns in a screen `screenColumns` wide; 0 means no limit (every cell whole).
    std::vector<int> columnWidths(int screenColumns) const;
    // The heading line, and row `row`; the cells of the last column are not padded.
    CString headingLine(const std::vector<int>& widths) const;
    CString rowLine(int row, const std::vector<int>& widths) const;
    int rowCount() const { return static_cast<int>(m_rows.size()); }

    static constexpr const char16_t* kSeparator = u" | ";

private:
    static CString line(const std::vector<CString>& cells, const std::vector<int>& widths);

    std::vector<CString> m_headings;
    std::vector<std::vector<CString>> m_rows;
};
