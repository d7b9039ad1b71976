// CSortedListCtrl: a report list whose cells are edited in place by a text editor or a drop-down editor
// that move from cell to cell, with an optional sort on a heading click. This is the control's model: the
// window system (the terminal front end, or a test) hands it the events a window would get, in the same
// order, and shows what it holds. Pixels are kept only where the control's decisions depend on them.
#pragma once

#include "support/CArray.h"
#include "support/dialog/EditorControls.h"
#include "support/dialog/ListGeometry.h"
#include "support/dialog/ListMessages.h"

#include <memory>
#include <vector>

using DWORD_PTR = std::uintptr_t;

// Cell kinds of a column.
enum : int { QX_CELL_READONLY = 0, QX_CELL_TEXT = 1, QX_CELL_DROPDOWN = 2, QX_CELL_DROPDOWN_LIST = 3 };

struct tagSUBITEMINFO {
    int nKind = QX_CELL_READONLY;
    CStringArray arrChoices;
};

enum : int { LVCFMT_LEFT = 0, LVCFMT_RIGHT = 1, LVCFMT_CENTER = 2 };
enum : unsigned { LVS_EX_HEADERDRAGDROP = 0x10, LVS_EX_FULLROWSELECT = 0x20 };

struct LVCOLUMN {
    CString pszText;
    int fmt = LVCFMT_LEFT;
    int cx = 0;
    int iSubItem = 0;
};

// Item data that a list owning its item data destroys with the item.
class QX_API CListItemData {
public:
    virtual ~CListItemData();
};

// The heading's sort state.
class QX_API CSortedHeaderCtrl {
public:
    void SetSort(int column, bool ascending) {
        m_nSortColumn = column;
        m_bAscending = ascending;
    }
    int GetSortColumn() const { return m_nSortColumn; }
    bool IsAscending() const { return m_bAscending; }

private:
    int m_nSortColumn = -1;
    bool m_bAscending = true;
};

class QX_API CSortedListCtrl : public CMessageWnd {
public:
    CSortedListCtrl(bool sortable, bool ownsItemData);
    ~CSortedListCtrl() override;

    // The window: its parent, its outer size in pixels (two pixels of border each side), its font's row height.
    void Create(CMessageWnd* parent, int windowWidth, int windowHeight);
    CRect GetWindowRect() const { return {0, 0, m_windowWidth, m_windowHeight}; }
    CRect GetClientRect() const { return {0, 0, m_windowWidth - 4, m_windowHeight - 4}; }
    // Kept as the window keeps it; the terminal shows every row whole and columns in their own order.
    void SetExtendedStyle(unsigned style) { m_extendedStyle = style; }
    unsigned GetExtendedStyle() const { return m_extendedStyle; }

    // Columns. A failed insert gives -1 and makes no column record.
    int InsertColumn(int column, const LVCOLUMN& description, int kind, const CStringArray* choices = nullptr);
    int InsertColumn(int column, const CString& heading, int format, int width, int subItem, int kind,
                     const CStringArray* choices = nullptr);
    bool DeleteColumn(int column);
    int GetColumnCount() const { return static_cast<int>(m_columns.size()); }
    CString GetColumnHeading(int column) const;
    int GetColumnWidth(int column) const;
    bool SetColumnWidth(int column, int width);
    // The column's record; an index without one throws std::invalid_argument.
    const tagSUBITEMINFO& GetColumnInfo(int column) const;
    tagSUBITEMINFO& GetColumnInfo(int column);

    // Rows and cells. Reading a cell that does not exist gives empty text.
    int InsertItem(int row, const CString& text);
    bool DeleteItem(int row);
    void DeleteAllItems();
    int GetItemCount() const { return static_cast<int>(m_items.size()); }
    CString GetItemText(int row, int column) const;
    bool SetItemText(int row, int column, const CString& text);
    bool SetItemData(int row, DWORD_PTR data);
    DWORD_PTR GetItemData(int row) const;

    // Selection, as the control keeps it.
    int GetSelectedCount() const;
    bool IsSelected(int row) const;
    int GetSelectionMark() const { return m_selectionMark; }
    void SetSelected(int row, bool selected);
    int GetFocusedItem() const;

    // Geometry.
    int GetRowHeight() const { return m_rowHeight; }
    int GetHeaderHeight() const { return m_headerHeight; }
    int GetTopIndex() const { return m_topIndex; }
    int GetScrollX() const { return m_scrollX; }
    int GetCountPerPage() const;
    CPoint GetItemPosition(int row) const;
    CRect GetHeaderItemRect(int column) const;
    CRect GetItemRect(int row) const;

    // The events of the window.
    void OnLButtonDown(CPoint point, bool control = false);
    void OnLButtonDblClk(CPoint point, bool control = false) { OnLButtonDown(point, control); }
    void OnRButtonDown(CPoint point);
    void OnVScroll(int rows);
    void OnHScroll(int pixels);
    void OnSize(int clientWidth) { m_clientWidth = clientWidth; }
    // A heading click (LVN_COLUMNCLICK); the answer is 0.
    LRESULT OnColumnClick(int column);
    void OnPaint();
    // The messages of the editors and the moves (1034 to 1045).
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // Something asked for a repaint that has not come yet; the window system then sends OnPaint.
    bool NeedsPaint() const { return m_needsPaint; }
    void Invalidate() { m_needsPaint = true; }

    // Closes the open editor, writing its text to the cell when they differ.
    void CloseEditor();
    int GetEditRow() const { return m_editRow; }
    int GetEditColumn() const { return m_editColumn; }
    // The editors, null until the first click made them.
    CMyListCtrlEdit* GetTextEditor() { return m_textEditor.get(); }
    CListCtrlComboBox* GetDropDownEditor() { return m_dropDown.get(); }
    bool ListHasFocus() const { return m_hasFocus; }

    // Sorting and the full-row mode.
    void SortColumn(int column, bool ascending);
    void ReSort();
    const CSortedHeaderCtrl& GetHeaderCtrl() const { return m_header; }
    void SetFullRow(bool fullRow);
    bool IsFullRow() const { return m_fullRow; }
    void SetVerticalGrid(bool grid) { m_verticalGrid = grid; Invalidate(); }
    bool HasVerticalGrid() const { return m_verticalGrid; }
    // Compares two items by their data; this class has no order of its own and gives 0.
    virtual int CompareItems(DWORD_PTR first, DWORD_PTR second);

private:
    struct Item {
        std::vector<CString> texts;
        DWORD_PTR data = 0;
        bool selected = false;
        bool focused = false;
    };
    struct Column {
        CString heading;
        int format = LVCFMT_LEFT;
        int width = 0;
        int subItem = 0;
    };

    bool editPositionValid() const;
    int hitRow(CPoint point) const;
    void defaultClick(CPoint point, bool control);
    void createEditors();
    void openDropDown(int row, int column);
    void moveVertically(bool next);
    void moveHorizontally(bool next);
    void selectOnly(int row);
    void writeThrough(const CString& text, UINT notification);
    void releaseItemData(Item& item);
    int visibleColumnCount() const;
    int columnAt(int x, CPoint rowPosition) const;

    bool m_sortable;
    bool m_ownsItemData;
    bool m_fullRow = false;
    bool m_verticalGrid = false;
    CMessageWnd* m_parent = nullptr;
    std::unique_ptr<CListCtrlComboBox> m_dropDown;
    std::unique_ptr<CMyListCtrlEdit> m_textEditor;
    int m_editRow = -1;
    int m_editColumn = -1;
    QxListCell m_changedCell;
    std::vector<std::unique_ptr<tagSUBITEMINFO>> m_records;
    std::vector<Column> m_columns;
    std::vector<Item> m_items;
    CSortedHeaderCtrl m_header;
    int m_windowWidth = 0;
    int m_windowHeight = 0;
    int m_clientWidth = 0;
    int m_rowHeight = 17;
    int m_headerHeight = 21;
    int m_topIndex = 0;
    int m_scrollX = 0;
    int m_selectionMark = -1;
    bool m_needsPaint = false;
    bool m_hasFocus = false;
    unsigned m_extendedStyle = 0;
};
