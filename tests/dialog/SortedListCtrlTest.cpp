// The editing list: which editor opens where and when, the live write-through, closing, the keyboard moves
// at the table's edges, and sorting.
#include "DialogTestSupport.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace {

// A list like the cabinet dialog's: a read-only column, a drop-down column, three text columns.
class EditingList : public ::testing::Test {
protected:
    void SetUp() override {
        list.Create(&parent, 500, 190);
        list.InsertColumn(0, u"name", LVCFMT_LEFT, 97, 0, QX_CELL_READONLY);
        const CStringArray choices{u"A1", u"A2"};
        list.InsertColumn(1, u"number", LVCFMT_LEFT, 97, 1, QX_CELL_DROPDOWN, &choices);
        for (int column = 2; column < 5; ++column) list.InsertColumn(column, u"text", LVCFMT_LEFT, 97, column, QX_CELL_TEXT);
        for (int row = 0; row < 3; ++row) {
            list.InsertItem(row, CString(u"row") + CString(static_cast<char16_t>(u'0' + row)));
            for (int column = 1; column < 5; ++column) list.SetItemText(row, column, u"old");
        }
        driver.settle();
    }
    void send(UINT message) {
        list.SendMessage(message);
        driver.settle();
    }

    RecordingParent parent;
    CSortedListCtrl list{false, false};
    ListDriver driver{list, parent};
};

} // namespace

TEST_F(EditingList, AClickChoosesTheCellThePaintAfterItOpensTheTextEditorAndTypingWritesTheCellAtOnce) {
    list.OnLButtonDown(driver.cellMiddle(1, 3));
    EXPECT_EQ(driver.editing(), "1 3 none");
    list.OnPaint();
    ASSERT_EQ(driver.editing(), "1 3 text");
    EXPECT_EQ(list.GetTextEditor()->GetWindowText(), u"old");
    EXPECT_TRUE(list.GetTextEditor()->HasFocus());
    EXPECT_EQ(list.GetTextEditor()->GetWindowRect().left, list.GetHeaderItemRect(3).left);
    EXPECT_EQ(parent.log(), "");  // giving the editor its text is no change of the cell

    // Each change names the cell and the list to the parent.
    driver.type(u"new");
    EXPECT_EQ(rowsOf(list)[1], u"row1|old|old|new|old");
    EXPECT_EQ(parent.log(), "edit 1 3");
    EXPECT_EQ(parent.messages.back().lParam, reinterpret_cast<LPARAM>(list.GetSafeHwnd()));
    // Closing the editor then has nothing to write and tells nobody.
    driver.click(0, 2);
    EXPECT_EQ(rowsOf(list)[1], u"row1|old|old|new|old");
    EXPECT_EQ(parent.log(), "edit 1 3");
}

TEST_F(EditingList, ADropDownCellAsksTheParentFirstThenOffersTheColumnsChoicesAndWritesThePick) {
    driver.click(0, 1);
    ASSERT_EQ(driver.editing(), "0 1 drop-down");
    EXPECT_EQ(list.GetDropDownEditor()->GetEntries(), (CStringArray{u"A1", u"A2"}));
    EXPECT_EQ(list.GetDropDownEditor()->GetWindowText(), u"old");

    // Picking writes the entry, not the old text of the editor.
    list.GetDropDownEditor()->UserPicks(1);
    driver.settle();
    EXPECT_EQ(list.GetItemText(0, 1), u"A2");
    EXPECT_EQ(parent.log(), "opening 0 1, combo 0 1");

    // The parent may change the choices when it is asked; without any, one empty entry is offered.
    list.GetColumnInfo(1).arrChoices.RemoveAll();
    driver.click(1, 1);
    EXPECT_EQ(list.GetDropDownEditor()->GetEntries(), (CStringArray{u""}));
}

TEST_F(EditingList, ARightClickAScrollOrSelectingSeveralRowsClosesTheEditorAndKeepsWhatWasTyped) {
    driver.click(1, 1);
    driver.type(u"  ");
    EXPECT_EQ(list.GetItemText(1, 1), u"old");  // a cleared drop-down changes its cell only when it closes
    list.OnRButtonDown(driver.cellMiddle(2, 0));
    EXPECT_TRUE(list.IsSelected(2) && list.GetSelectedCount() == 1);  // a right click selects its row alone
    EXPECT_EQ(driver.editing(), "no cell none");

    driver.click(0, 2);
    driver.type(u"kept");
    list.OnVScroll(1);
    driver.settle();
    EXPECT_EQ(driver.editing(), "no cell none");
    driver.click(0, 3);
    driver.type(u"typed");
    driver.click(1, 3, true);  // with several rows selected the paint closes the editor instead of opening one
    EXPECT_EQ(list.GetSelectedCount(), 2);
    EXPECT_EQ(driver.editing(), "no cell none");
    EXPECT_EQ(rowsOf(list), (std::vector<CString>{u"row0|old|kept|typed|old", u"row1|  |old|old|old",
                                                  u"row2|old|old|old|old"}));
    EXPECT_EQ(parent.log(), "opening 1 1, edit 0 2, edit 0 3");
}

TEST_F(EditingList, ReadOnlyCellsTheIconZoneAndClicksBelowTheLastRowOpenNoEditor) {
    // The cell is chosen, as the column moves may choose it, but nothing opens.
    driver.click(1, 0);
    EXPECT_EQ(driver.editing(), "1 0 none");

    // The icon zone of the first column posts to the parent: the message waits for the message loop.
    list.OnLButtonDown({5, driver.cellMiddle(1, 0).y});
    EXPECT_EQ(parent.log(), "");
    driver.settle();
    EXPECT_EQ(parent.log(), "icon 1");
    // A first column narrower than 16 pixels is icon zone all over.
    list.SetColumnWidth(0, 15);
    driver.click(2, 0);
    EXPECT_EQ(parent.log(), "icon 1, icon 2");
    EXPECT_EQ(driver.editing(), "no cell none");

    driver.click(2, 3);
    ASSERT_TRUE(driver.textEditorOpen());
    list.OnLButtonDown({driver.cellMiddle(2, 3).x, list.GetItemRect(2).bottom + 5});
    driver.settle();
    EXPECT_EQ(driver.editing(), "no cell none");
    EXPECT_EQ(list.GetSelectionMark(), 2);  // the control keeps its mark; the height test decides
}

TEST_F(EditingList, TheKeysWalkDownAndUpTheColumnsAndEndBeyondTheTable) {
    // From a clicked cell where "x" is typed, keys of the text editor in turn, each with where the edit stands after it.
    const struct { const char* what; int row; int column; std::vector<std::pair<int, std::string>> keys; } walks[] = {
        {"enter moves down, then from the last row to the top of the next column, up back to the left", 1, 2,
         {{VK_RETURN, "2 2 text"}, {VK_DOWN, "0 3 text"}, {VK_UP, "2 2 text"}}},
        {"enter on the last cell of all leaves no cell in edit", 2, 4, {{VK_RETURN, "no cell none"}}},
        {"up from the top lands in the drop-down of the column to the left", 0, 2, {{VK_UP, "2 1 drop-down"}}},
    };
    for (const auto& walk : walks) {
        driver.click(walk.row, walk.column);
        driver.type(u"x");
        for (const auto& [key, after] : walk.keys) {
            driver.key(key);
            EXPECT_EQ(driver.editing(), after) << walk.what;
            const int row = list.GetEditRow();
            EXPECT_TRUE(row < 0 || (list.IsSelected(row) && list.GetSelectedCount() == 1)) << walk.what;  // the row moved to alone
        }
    }
    EXPECT_EQ(rowsOf(list), (std::vector<CString>{u"row0|old|x|old|old", u"row1|old|x|old|old", u"row2|old|old|old|x"}));
    // Keys of the text editor mean nothing while the drop-down is the open editor, nor with no editor open.
    send(QXLM_EDIT_UP);
    EXPECT_EQ(driver.editing(), "2 1 drop-down");
    driver.click(2, 4);
    driver.key(VK_RETURN);
    send(QXLM_EDIT_DOWN);
    EXPECT_EQ(driver.editing(), "no cell none");
}

TEST(EditingListEdges, UpInTheFirstCellEndsTheEditAndASingleRowWalksAcrossColumns) {
    RecordingParent parent;
    CSortedListCtrl list(false, false);
    ListDriver driver(list, parent);
    list.Create(&parent, 300, 100);
    list.InsertColumn(0, u"a", LVCFMT_LEFT, 90, 0, QX_CELL_TEXT);
    list.InsertColumn(1, u"b", LVCFMT_LEFT, 90, 1, QX_CELL_TEXT);
    list.InsertItem(0, u"only");
    driver.click(0, 0);
    driver.key(VK_DOWN);  // the only row is the last: on to the next column
    EXPECT_EQ(driver.editing(), "0 1 text");
    driver.key(VK_UP);
    EXPECT_EQ(driver.editing(), "0 0 text");
    driver.key(VK_UP);
    EXPECT_EQ(driver.editing(), "no cell none");
}

TEST_F(EditingList, ColumnMovesSkipColumnsOfNoWidthEndBehindTheLastCellAndRecordsFollowTheColumns) {
    list.SetColumnWidth(3, 0);
    driver.click(1, 2);
    send(QXLM_NEXT_COLUMN);
    EXPECT_EQ(driver.editing(), "1 4 text");
    send(QXLM_NEXT_COLUMN);
    EXPECT_EQ(driver.editing(), "2 0 none");
    driver.click(2, 4);
    send(QXLM_NEXT_COLUMN);
    EXPECT_EQ(driver.editing(), "no cell none");

    // The column records follow inserts and deletes; a missing one is refused.
    EXPECT_EQ(list.InsertColumn(-1, u"bad", LVCFMT_LEFT, 10, 0, QX_CELL_TEXT), -1);
    EXPECT_TRUE(list.DeleteColumn(1));
    EXPECT_EQ(list.GetColumnInfo(1).nKind, QX_CELL_TEXT);
    EXPECT_EQ(rowsOf(list)[0], u"row0|old|old|old");
    EXPECT_THROW(list.GetColumnInfo(4), std::invalid_argument);
    EXPECT_EQ(list.GetItemText(7, 1), u"");
}

namespace {

class Counted final : public CListItemData {
public:
    explicit Counted(int& destroyed) : m_destroyed(destroyed) {}
    ~Counted() override { ++m_destroyed; }

private:
    int& m_destroyed;
};

// Orders items by the number their data holds.
class NumberList final : public CSortedListCtrl {
public:
    NumberList(bool sorts, RecordingParent& parent, std::initializer_list<int> values) : CSortedListCtrl(sorts, false) {
        Create(&parent, 300, 200);
        InsertColumn(0, u"n", LVCFMT_LEFT, 90, 0, QX_CELL_TEXT);
        for (const int value : values) SetItemData(InsertItem(GetItemCount(), CString(std::to_string(value))), value);
    }
    int CompareItems(DWORD_PTR first, DWORD_PTR second) override {
        const int a = static_cast<int>(first);
        const int b = static_cast<int>(second);
        const int order = a < b ? -1 : (a > b ? 1 : 0);
        return GetHeaderCtrl().IsAscending() ? order : -order;
    }
};

} // namespace

TEST(SortedList, AHeadingClickSortsAscendingThenDescendingAndAlwaysTellsTheParent) {
    RecordingParent parent;
    NumberList list(true, parent, {2, 3, 1});
    EXPECT_EQ(list.OnColumnClick(0), 0);
    EXPECT_EQ(list.GetHeaderCtrl().GetSortColumn(), 0);
    EXPECT_TRUE(list.GetHeaderCtrl().IsAscending());
    EXPECT_EQ(rowsOf(list), (std::vector<CString>{u"1", u"2", u"3"}));
    list.OnColumnClick(0);
    EXPECT_FALSE(list.GetHeaderCtrl().IsAscending());
    EXPECT_EQ(rowsOf(list), (std::vector<CString>{u"3", u"2", u"1"}));

    NumberList unsorted(false, parent, {2, 1});
    unsorted.OnColumnClick(0);
    EXPECT_EQ(rowsOf(unsorted), (std::vector<CString>{u"2", u"1"}));
    EXPECT_EQ(unsorted.GetHeaderCtrl().GetSortColumn(), -1);
    EXPECT_EQ(parent.log(), "heading 0, heading 0, heading 0");
}

TEST(SortedList, AListThatOwnsItsItemDataDestroysItWithTheItemsAndOneThatDoesNotKeepsIt) {
    int destroyed = 0;
    Counted kept(destroyed);
    for (const bool owns : {true, false}) {
        CSortedListCtrl list(false, owns);
        list.InsertColumn(0, u"n", LVCFMT_LEFT, 90, 0, QX_CELL_TEXT);
        for (int row = 0; row < 3; ++row)
            list.SetItemData(list.InsertItem(row, u"x"), reinterpret_cast<DWORD_PTR>(owns ? new Counted(destroyed) : &kept));
        list.InsertItem(3, u"no data");
        list.DeleteItem(1);
        EXPECT_EQ(destroyed, owns ? 1 : 3);
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(SortedList, TheFullRowModeAndGridLinesAreSwitchedAndRepaint) {
    CSortedListCtrl list(false, false);
    list.SetFullRow(true);
    EXPECT_TRUE(list.IsFullRow());
    EXPECT_TRUE(list.NeedsPaint());
    list.OnPaint();
    list.SetVerticalGrid(true);
    EXPECT_TRUE(list.HasVerticalGrid());
    EXPECT_TRUE(list.NeedsPaint());
}
