// Laying out a table for the terminal.
#include "TerminalTable.h"

#include "support/DisplayWidth.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int kSeparatorWidth = 3;
// Narrower than this a cut cell says nothing.
constexpr int kNarrowestColumn = 4;

} // namespace

TerminalTable::TerminalTable(std::vector<CString> headings) : m_headings(std::move(headings)) {}

void TerminalTable::addRow(std::vector<CString> cells) {
    cells.resize(m_headings.size());
    m_rows.push_back(std::move(cells));
}

std::vector<int> TerminalTable::columnWidths(int screenColumns) const {
    const size_t count = m_headings.size();
    std::vector<int> natural(count);
    for (size_t column = 0; column < count; ++column) {
        natural[column] = QxDisplayWidth(m_headings[column]);
        for (const auto& row : m_rows) natural[column] = std::max(natural[column], QxDisplayWidth(row[column]));
    }
    if (screenColumns <= 0 || count == 0) return natural;
    // One column to spare: a line that fills the screen exactly wraps on some terminals.
    const int room = screenColumns - 1 - kSeparatorWidth * static_cast<int>(count - 1);
    if (std::accumulate(natural.begin(), natural.end(), 0) <= room) return natural;

    // The narrow columns keep their width; what is left is shared evenly by the wide ones.
    std::vector<size_t> order(count);
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return natural[a] < natural[b]; });
    std::vector<int> widths(count);
    int left = room;
    for (size_t i = 0; i < count; ++i) {
        const size_t column = order[i];
        const int share = left / static_cast<int>(count - i);
        widths[column] = std::max(std::min(natural[column], share), std::min(natural[column], kNarrowestColumn));
        left -= widths[column];
    }
    return widths;
}

CString TerminalTable::headingLine(const std::vector<int>& widths) const { return line(m_headings, widths); }

CString TerminalTable::rowLine(int row, const std::vector<int>& widths) const {
    return line(m_rows.at(static_cast<size_t>(row)), widths);
}

CString TerminalTable::line(const std::vector<CString>& cells, const std::vector<int>& widths) {
    CString text;
    for (size_t column = 0; column < cells.size() && column < widths.size(); ++column) {
        if (column > 0) text += kSeparator;
        const bool last = column + 1 == cells.size();
        if (last && QxDisplayWidth(cells[column]) <= widths[column]) text += cells[column];
        else text += QxFitToWidth(cells[column], widths[column]);
    }
    return text;
}
