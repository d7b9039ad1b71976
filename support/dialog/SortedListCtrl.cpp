// The editing list: columns and rows, the editor's life cycle, keyboard moves and sorting.
#include "support/dialog/SortedListCtrl.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

constexpr int kIconZoneWidth = 16;

} // namespace

CListItemData::~CListItemData() = default;

CSortedListCtrl::CSortedListCtrl(bool sortable, bool ownsItemData)
    : m_sortable(sortable), m_ownsItemData(ownsItemData) {}

// The window goes: the items' data first (as each item's deletion notice does), then the column records.
CSortedListCtrl::~CSortedListCtrl() { DeleteAllItems(); }

// A new window: whatever an earlier run of the dialog left goes.
void CSortedListCtrl::Create(CMessageWnd* parent, int windowWidth, int windowHeight) {
    DeleteAllItems();
    m_columns.clear();
    m_records.clear();
    m_textEditor.reset();
    m_dropDown.reset();
    m_editRow = m_editColumn = -1;
    m_scrollX = 0;
    m_needsPaint = false;
    m_parent = parent;
    m_windowWidth = std::max(windowWidth, 4);
    m_windowHeight = std::max(windowHeight, 4);
    m_clientWidth = GetClientRect().Width();
}

// Columns --------------------------------------------------------------------------------------------------

int CSortedListCtrl::InsertColumn(int column, const LVCOLUMN& description, int kind, const CStringArray* choices) {
    if (column < 0) return -1;
    const int index = std::min(column, GetColumnCount());
    m_columns.insert(m_columns.begin() + index,
                     Column{description.pszText, description.fmt, std::max(description.cx, 0), description.iSubItem});
    for (Item& item : m_items) item.texts.insert(item.texts.begin() + index, CString());
    auto record = std::make_unique<tagSUBITEMINFO>();
    record->nKind = kind;
    if (choices) record->arrChoices = *choices;
    m_records.insert(m_records.begin() + index, std::move(record));
    return index;
}

int CSortedListCtrl::InsertColumn(int column, const CString& heading, int format, int width, int subItem, int kind,
                                  const CStringArray* choices) {
    return InsertColumn(column, LVCOLUMN{heading, format, width, subItem}, kind, choices);
}

bool CSortedListCtrl::DeleteColumn(int column) {
    if (column < 0 || column >= GetColumnCount()) return false;
    m_columns.erase(m_columns.begin() + column);
    for (Item& item : m_items) item.texts.erase(item.texts.begin() + column);
    m_records.erase(m_records.begin() + column);
    return true;
}

CString CSortedListCtrl::GetColumnHeading(int column) const {
    if (column < 0 || column >= GetColumnCount()) return {};
    return m_columns[static_cast<size_t>(column)].heading;
}

int CSortedListCtrl::GetColumnWidth(int column) const {
    if (column < 0 || column >= GetColumnCount()) return 0;
    return m_columns[static_cast<size_t>(column)].width;
}

bool CSortedListCtrl::SetColumnWidth(int column, int width) {
    if (column < 0 || column >= GetColumnCount()) return false;
    m_columns[static_cast<size_t>(column)].width = std::max(width, 0);
    return true;
}

const tagSUBITEMINFO& CSortedListCtrl::GetColumnInfo(int column) const {
    if (column < 0 || column >= static_cast<int>(m_records.size()))
        throw std::invalid_argument("no record for this column");
    return *m_records[static_cast<size_t>(column)];
}

tagSUBITEMINFO& CSortedListCtrl::GetColumnInfo(int column) {
    return const_cast<tagSUBITEMINFO&>(std::as_const(*this).GetColumnInfo(column));
}

// Rows and cells -------------------------------------------------------------------------------------------

int CSortedListCtrl::InsertItem(int row, const CString& text) {
    if (row < 0 || GetColumnCount() == 0) return -1;
    const int index = std::min(row, GetItemCount());
    Item item;
    item.texts.resize(static_cast<size_t>(GetColumnCount()));
    item.texts[0] = text;
    m_items.insert(m_items.begin() + index, std::move(item));
    if (m_selectionMark >= index) ++m_selectionMark;
    return index;
}

void CSortedListCtrl::releaseItemData(Item& item) {
    if (m_ownsItemData && item.data != 0) delete reinterpret_cast<CListItemData*>(item.data);
    item.data = 0;
}

bool CSortedListCtrl::DeleteItem(int row) {
    if (row < 0 || row >= GetItemCount()) return false;
    releaseItemData(m_items[static_cast<size_t>(row)]);
    m_items.erase(m_items.begin() + row);
    if (m_selectionMark == row) m_selectionMark = -1;
    else if (m_selectionMark > row) --m_selectionMark;
    return true;
}

void CSortedListCtrl::DeleteAllItems() {
    for (Item& item : m_items) releaseItemData(item);
    m_items.clear();
    m_selectionMark = -1;
    m_topIndex = 0;
}

CString CSortedListCtrl::GetItemText(int row, int column) const {
    if (row < 0 || row >= GetItemCount() || column < 0 || column >= GetColumnCount()) return {};
    return m_items[static_cast<size_t>(row)].texts[static_cast<size_t>(column)];
}

bool CSortedListCtrl::SetItemText(int row, int column, const CString& text) {
    if (row < 0 || row >= GetItemCount() || column < 0 || column >= GetColumnCount()) return false;
    m_items[static_cast<size_t>(row)].texts[static_cast<size_t>(column)] = text;
    Invalidate();
    return true;
}

bool CSortedListCtrl::SetItemData(int row, DWORD_PTR data) {
    if (row < 0 || row >= GetItemCount()) return false;
    Item& item = m_items[static_cast<size_t>(row)];
    if (item.data != data) releaseItemData(item);
    item.data = data;
    return true;
}

DWORD_PTR CSortedListCtrl::GetItemData(int row) const {
    if (row < 0 || row >= GetItemCount()) return 0;
    return m_items[static_cast<size_t>(row)].data;
}

// Selection ------------------------------------------------------------------------------------------------

int CSortedListCtrl::GetSelectedCount() const {
    return static_cast<int>(std::count_if(m_items.begin(), m_items.end(), [](const Item& item) { return item.selected; }));
}

bool CSortedListCtrl::IsSelected(int row) const {
    return row >= 0 && row < GetItemCount() && m_items[static_cast<size_t>(row)].selected;
}

void CSortedListCtrl::SetSelected(int row, bool selected) {
    if (row < 0 || row >= GetItemCount()) return;
    m_items[static_cast<size_t>(row)].selected = selected;
    Invalidate();
}

int CSortedListCtrl::GetFocusedItem() const {
    for (int row = 0; row < GetItemCount(); ++row)
        if (m_items[static_cast<size_t>(row)].focused) return row;
    return -1;
}

void CSortedListCtrl::selectOnly(int row) {
    for (Item& item : m_items) item.selected = item.focused = false;
    m_items[static_cast<size_t>(row)].selected = true;
    m_items[static_cast<size_t>(row)].focused = true;
    m_selectionMark = row;
}

// Geometry -------------------------------------------------------------------------------------------------

int CSortedListCtrl::GetCountPerPage() const {
    return std::max((GetClientRect().Height() - m_headerHeight) / m_rowHeight, 0);
}

CPoint CSortedListCtrl::GetItemPosition(int row) const {
    return {-m_scrollX, m_headerHeight + (row - m_topIndex) * m_rowHeight};
}

CRect CSortedListCtrl::GetHeaderItemRect(int column) const {
    if (column < 0 || column >= GetColumnCount()) return {};
    int left = 0;
    for (int i = 0; i < column; ++i) left += m_columns[static_cast<size_t>(i)].width;
    return {left, 0, left + m_columns[static_cast<size_t>(column)].width, m_headerHeight};
}

CRect CSortedListCtrl::GetItemRect(int row) const {
    const CPoint position = GetItemPosition(row);
    const CRect last = GetHeaderItemRect(GetColumnCount() - 1);
    return {position.x, position.y, position.x + last.right, position.y + m_rowHeight};
}

int CSortedListCtrl::hitRow(CPoint point) const {
    if (point.y < m_headerHeight || point.y >= GetClientRect().Height() || point.x < 0) return -1;
    if (point.x >= GetItemRect(0).right) return -1;
    const int row = m_topIndex + (point.y - m_headerHeight) / m_rowHeight;
    return row < GetItemCount() ? row : -1;
}

int CSortedListCtrl::columnAt(int x, CPoint rowPosition) const {
    for (int column = 0; column < GetColumnCount(); ++column) {
        const CRect heading = GetHeaderItemRect(column);
        if (heading.left + rowPosition.x <= x && heading.right + rowPosition.x > x) return column;
    }
    return -1;
}

// Events ---------------------------------------------------------------------------------------------------

// What the control itself does with a click: a row under it becomes the selection (with Control it is
// added or taken away); a click on no row clears the selection and leaves the selection mark.
void CSortedListCtrl::defaultClick(CPoint point, bool control) {
    m_hasFocus = true;
    const int row = hitRow(point);
    if (row < 0) {
        if (!control)
            for (Item& item : m_items) item.selected = false;
        Invalidate();
        return;
    }
    if (control) {
        for (Item& item : m_items) item.focused = false;
        Item& item = m_items[static_cast<size_t>(row)];
        item.selected = !item.selected;
        item.focused = true;
        m_selectionMark = row;
    } else {
        selectOnly(row);
    }
    Invalidate();
}

void CSortedListCtrl::OnLButtonDown(CPoint point, bool control) {
    CloseEditor();
    defaultClick(point, control);
    const int row = GetSelectionMark();
    const CPoint position = GetItemPosition(row);
    const int column = columnAt(point.x, position);
    if (column < 0 || row < 0) return;

    if (column == 0) {
        const CRect heading = GetHeaderItemRect(0);
        if (heading.Width() < kIconZoneWidth ||
            (point.x >= position.x + heading.left && point.x < position.x + kIconZoneWidth)) {
            if (m_parent) m_parent->PostMessage(QXLM_ICON_CLICKED, static_cast<WPARAM>(row), 0);
            return;
        }
    }

    createEditors();
    if (GetItemCount() > 0) {
        if (GetItemCount() * m_rowHeight + m_headerHeight > point.y) {
            m_editRow = row;
            m_editColumn = column;
        } else {
            m_editRow = m_editColumn = -1;
            Invalidate();
        }
    }
    if (m_editColumn < 0) return;
    const int kind = GetColumnInfo(m_editColumn).nKind;
    if (kind != QX_CELL_DROPDOWN && kind != QX_CELL_DROPDOWN_LIST) {
        Invalidate();
        return;
    }
    openDropDown(m_editRow, m_editColumn);
}

void CSortedListCtrl::createEditors() {
    if (!m_textEditor) {
        m_textEditor = std::make_unique<CMyListCtrlEdit>(*this);
        m_textEditor->MoveWindow({10, 10, 100, 1000});
    }
    if (!m_dropDown) {
        m_dropDown = std::make_unique<CListCtrlComboBox>(*this);
        m_dropDown->MoveWindow({0, 0, 100, 1000});
    }
}

void CSortedListCtrl::openDropDown(int row, int column) {
    if (m_parent) m_parent->SendMessage(QXLM_COMBO_OPENING, static_cast<WPARAM>(row), column);
    m_dropDown->ResetContent();
    const CStringArray& choices = GetColumnInfo(column).arrChoices;
    if (choices.IsEmpty()) m_dropDown->AddString(CString());
    for (const CString& choice : choices) m_dropDown->AddString(choice);
    Invalidate();
}

void CSortedListCtrl::OnRButtonDown(CPoint point) {
    CloseEditor();
    defaultClick(point, false);
    m_editRow = m_editColumn = -1;
    Invalidate();
}

void CSortedListCtrl::OnVScroll(int rows) {
    CloseEditor();
    const int last = std::max(GetItemCount() - GetCountPerPage(), 0);
    m_topIndex = std::clamp(m_topIndex + rows, 0, last);
    Invalidate();
}

void CSortedListCtrl::OnHScroll(int pixels) {
    CloseEditor();
    const int last = std::max(GetItemRect(0).right + m_scrollX - GetClientRect().Width(), 0);
    m_scrollX = std::clamp(m_scrollX + pixels, 0, last);
    Invalidate();
}

bool CSortedListCtrl::editPositionValid() const {
    return m_editRow >= 0 && m_editRow < GetItemCount() && m_editColumn >= 0 && m_editColumn < GetColumnCount();
}

void CSortedListCtrl::OnPaint() {
    m_needsPaint = false;
    if (!m_textEditor || !m_dropDown || !editPositionValid()) return;
    const int selected = GetSelectedCount();
    if (selected == 0) return;
    if (selected > 1) {
        CloseEditor();
        m_editRow = m_editColumn = -1;
        return;
    }

    const CString text = GetItemText(m_editRow, m_editColumn);
    const CPoint position = GetItemPosition(m_editRow);
    const CRect heading = GetHeaderItemRect(m_editColumn);
    const CRect rowRect = GetItemRect(m_editRow);
    const int left = position.x + heading.left;
    const int right = position.x + heading.right;
    const int top = rowRect.top;
    const int bottom = rowRect.bottom;
    const int kind = GetColumnInfo(m_editColumn).nKind;

    if (kind == QX_CELL_TEXT && !m_textEditor->IsWindowVisible()) {
        if (left < right - 5) m_textEditor->MoveWindow({left, top, right, bottom});
        m_textEditor->SetWindowText(text);
        m_textEditor->SetSelAll();
        m_hasFocus = false;
        m_dropDown->SetFocus(false);
        m_textEditor->SetFocus(true);
        m_textEditor->ShowWindow(true);
        m_dropDown->ShowWindow(false);
    } else if (kind > QX_CELL_TEXT && !m_dropDown->IsWindowVisible()) {
        if (left - 4 < right - 7) m_dropDown->MoveWindow({left - 4, top - 1, right - 2, bottom});
        m_dropDown->SetWindowText(text);
        m_hasFocus = false;
        m_textEditor->SetFocus(false);
        m_dropDown->SetFocus(true);
        m_dropDown->ShowWindow(true);
        m_textEditor->ShowWindow(false);
    }
}

void CSortedListCtrl::CloseEditor() {
    if (!m_textEditor && !m_dropDown) {
        m_editRow = m_editColumn = -1;
        return;
    }
    if (editPositionValid()) {
        const CString cell = GetItemText(m_editRow, m_editColumn);
        if (m_textEditor->IsWindowVisible()) {
            const CString text = m_textEditor->GetWindowText();
            if (text != cell) {
                SetItemText(m_editRow, m_editColumn, text);
                m_textEditor->SetFocus(false);
                m_hasFocus = true;
            }
        } else if (m_dropDown->IsWindowVisible()) {
            const CString text = m_dropDown->GetWindowText();
            if (text != cell) SetItemText(m_editRow, m_editColumn, text);
        }
    }
    m_editRow = m_editColumn = -1;
    m_textEditor->ShowWindow(false);
    m_dropDown->ShowWindow(false);
}

void CSortedListCtrl::writeThrough(const CString& text, UINT notification) {
    SetItemText(m_editRow, m_editColumn, text);
    m_changedCell = {m_editRow, m_editColumn};
    if (m_parent)
        m_parent->SendMessage(notification, reinterpret_cast<WPARAM>(&m_changedCell),
                              reinterpret_cast<LPARAM>(GetSafeHwnd()));
}

LRESULT CSortedListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case QXLM_EDIT_CHANGED:
        if (m_textEditor && m_textEditor->IsWindowVisible() && editPositionValid())
            writeThrough(m_textEditor->GetWindowText(), QXLM_EDIT_CELL_CHANGED);
        return 0;
    case QXLM_COMBO_TYPED:
        if (m_dropDown && m_dropDown->IsWindowVisible() && editPositionValid())
            writeThrough(m_dropDown->GetWindowText(), QXLM_COMBO_CELL_CHANGED);
        return 0;
    case QXLM_COMBO_PICKED:
        if (m_dropDown && editPositionValid())
            writeThrough(m_dropDown->GetLBText(m_dropDown->GetCurSel()), QXLM_COMBO_CELL_CHANGED);
        return 0;
    case QXLM_EDIT_ENTER:
    case QXLM_EDIT_DOWN:
        if (m_textEditor && m_textEditor->IsWindowVisible()) moveVertically(true);
        return 0;
    case QXLM_EDIT_UP:
        if (m_textEditor && m_textEditor->IsWindowVisible()) moveVertically(false);
        return 0;
    case QXLM_NEXT_COLUMN:
        if (m_textEditor && m_textEditor->IsWindowVisible()) moveHorizontally(true);
        return 0;
    case QXLM_PREV_COLUMN:
        if (m_textEditor && m_textEditor->IsWindowVisible()) moveHorizontally(false);
        return 0;
    default:
        return CMessageWnd::WindowProc(message, wParam, lParam);
    }
}

// Keyboard moves -------------------------------------------------------------------------------------------

int CSortedListCtrl::visibleColumnCount() const {
    return static_cast<int>(std::count_if(m_columns.begin(), m_columns.end(), [](const Column& c) { return c.width > 0; }));
}

void CSortedListCtrl::moveVertically(bool next) {
    int row = m_editRow;
    int column = m_editColumn;
    CloseEditor();
    m_editRow = row;
    m_editColumn = column;

    const int lastRow = GetItemCount() - 1;
    if (next) {
        if (row != lastRow) {
            ++row;
        } else if (column == visibleColumnCount() - 1) {
            m_editRow = m_editColumn = -1;
            Invalidate();
            return;
        } else {
            row = 0;
            ++column;
        }
    } else {
        if (row != 0) {
            --row;
        } else if (column != 0) {
            row = lastRow;
            --column;
        } else {
            m_editRow = m_editColumn = -1;
            Invalidate();
            return;
        }
    }
    m_editRow = row;
    m_editColumn = column;
    selectOnly(row);
    Invalidate();
}

void CSortedListCtrl::moveHorizontally(bool next) {
    int row = m_editRow;
    int column = m_editColumn;
    CloseEditor();

    const int lastColumn = GetColumnCount() - 1;
    if (next) {
        do {
            if (column < lastColumn) {
                ++column;
            } else if (row < GetItemCount() - 1) {
                ++row;
                column = 0;
            } else {
                Invalidate();
                return;
            }
        } while (GetColumnWidth(column) == 0);
    } else if (column > 0) {
        --column;
    } else if (row > 0) {
        --row;
        column = lastColumn;
    } else {
        Invalidate();
        return;
    }
    m_editRow = row;
    m_editColumn = column;
    selectOnly(row);
    Invalidate();
}

// Sorting and the full-row mode ----------------------------------------------------------------------------

LRESULT CSortedListCtrl::OnColumnClick(int column) {
    if (m_sortable) {
        const bool ascending = column != m_header.GetSortColumn() || !m_header.IsAscending();
        SortColumn(column, ascending);
    }
    if (m_parent) m_parent->SendMessage(QXLM_COLUMNCLICKED, reinterpret_cast<WPARAM>(GetSafeHwnd()), column);
    return 0;
}

void CSortedListCtrl::SortColumn(int column, bool ascending) {
    m_header.SetSort(column, ascending);
    std::stable_sort(m_items.begin(), m_items.end(),
                     [this](const Item& a, const Item& b) { return CompareItems(a.data, b.data) < 0; });
    m_selectionMark = -1;
    for (int row = 0; row < GetItemCount(); ++row)
        if (m_items[static_cast<size_t>(row)].focused) m_selectionMark = row;
    Invalidate();
}

void CSortedListCtrl::ReSort() { SortColumn(m_header.GetSortColumn(), m_header.IsAscending()); }

int CSortedListCtrl::CompareItems(DWORD_PTR, DWORD_PTR) { return 0; }

void CSortedListCtrl::SetFullRow(bool fullRow) {
    m_fullRow = fullRow;
    Invalidate();
}
