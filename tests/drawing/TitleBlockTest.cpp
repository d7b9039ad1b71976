// Title blocks: the cell table, the rectangles searched for the number and name, and which title block
// of a drawing is accepted.
#include "ReaderDrawings.h"
#include "drawing/title/TitleBlock.h"
#include "drawing/title/TitleCellTable.h"

#include <gtest/gtest.h>

namespace {

const std::vector<CString> kAllKeys = {HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE, u"X1"};

struct TitleDrawing {
    // A title block at `at` whose number cell spans x 10..60, y 5..25 and name cell x 70..170, y 5..25,
    // with the two texts written inside.
    AcDbObjectId addTitle(const AcGePoint3d& at, const CString& number, const CString& name,
                          const std::vector<CString>& keys = kAllKeys) {
        const AcDbObjectId title = addBlockWithKeys(at, keys);
        AddTextRecord(b, title, CORVANE_TITLE,
                      {u"$BEGINETITLE", u"A3", u"图 号|10|25|60|5|0|0|", u"图纸名称|70|25|170|5|0|0|", u"$ENDTITLE"});
        b.addText(number, {at.x + 20, at.y + 12, 0});
        b.addText(name, {at.x + 90, at.y + 12, 0});
        return title;
    }

    AcDbObjectId addBlockWithKeys(const AcGePoint3d& at, const std::vector<CString>& keys) {
        if (m_block.isNull()) m_block = DefineSquareBlock(b, u"TITLE", 180);
        const AcDbObjectId title = b.addInsert(m_block, at);
        for (const CString& key : keys) b.setXDataStrings(title, key, {u"1"});
        return title;
    }

    bool readBlock(AcDbObjectId title, CString& number, CString& name) {
        AcDbObjectPointer<AcDbBlockReference> reference(title, AcDb::kForRead);
        return QxReadTitleBlock(&b.database(), reference.get(), number, name);
    }

    DrawingBuilder b;
    AcDbObjectId m_block;
};

class TitleBlockTest : public testing::Test, protected TitleDrawing {};

struct TitleSpec {
    CString number, name;
    std::vector<CString> keys = kAllKeys;
};

struct TitleChoice {
    const char* what;
    std::vector<TitleSpec> titles;  // one title block above the other
    bool found;
    CString number, name;
};

CStringArray Items(std::initializer_list<CString> items) {
    CStringArray out;
    for (const CString& item : items) out.Add(item);
    return out;
}

} // namespace

TEST(TitleCellTableTest, CellLinesHaveEightFields) {
    const TitleCell cell = ParseTitleCellLine(u"图号|10|20.5|30|5|1|2|a|b");
    EXPECT_EQ(cell.Name, u"图号");
    EXPECT_EQ(cell.X1, 10.0);
    EXPECT_EQ(cell.Y1, 20.5);
    EXPECT_EQ(cell.X2, 30.0);
    EXPECT_EQ(cell.Y2, 5.0);
    EXPECT_EQ(cell.Param1, 1.0);
    EXPECT_EQ(cell.Param2, 2.0);
    EXPECT_EQ(cell.Value, u"a|b");

    // Junk reads as 0, a number with junk behind it as the number.
    const TitleCell junk = ParseTitleCellLine(u"图名|abc|12mm| 7|||");
    EXPECT_EQ(junk.X1, 0.0);
    EXPECT_EQ(junk.Y1, 12.0);
    EXPECT_EQ(junk.X2, 7.0);
    EXPECT_EQ(junk.Value, u"");

    // A short line: the numbers not reached stay 0 and the rest is the value.
    const TitleCell shortLine = ParseTitleCellLine(u"图号|10|20");
    EXPECT_EQ(shortLine.X1, 10.0);
    EXPECT_EQ(shortLine.X2, 0.0);
    EXPECT_EQ(shortLine.Y2, 0.0);
    EXPECT_EQ(shortLine.Value, u"20");
}

TEST(TitleCellTableTest, MarkersFrameTheCellLines) {
    const TitleCellTable table = ParseTitleCellTable(
        Items({u"a|1|1|1|1|1|1|", u"$beginetitle", u"sheet|1", u"no bar", u"图号|10|20|30|5|0|0|", u"$EndTitle",
               u"图名|1|2|3|4|0|0|"}),
        {100, 50, 0});
    ASSERT_EQ(table.Cells.GetSize(), 1);
    EXPECT_EQ(table.Cells[0].Name, u"图号");
    // Insertion point (100, 50) and cell 10|20|30|5: x from 110 to 130, y from 55 to 70.
    EXPECT_EQ(table.Cells[0].X1, 110.0);
    EXPECT_EQ(table.Cells[0].X2, 130.0);
    EXPECT_EQ(table.Cells[0].Y1, 70.0);
    EXPECT_EQ(table.Cells[0].Y2, 55.0);

    const TitleCellTable noMarkers = ParseTitleCellTable(Items({u"图号|1|2|3|4|0|0|", u"图名|1|2|3|4|0|0|"}), {});
    EXPECT_EQ(noMarkers.Cells.GetSize(), 2);
}

TEST(TitleCellTableTest, TheTableHoldsAHundredCells) {
    CStringArray items;
    for (int i = 0; i < 150; ++i) items.Add(CString(u"cell|") + CString(std::to_string(i)) + u"|0|0|0|0|0|");
    const TitleCellTable table = ParseTitleCellTable(items, {});
    ASSERT_EQ(table.Cells.GetSize(), TitleCellTable::kMaxCells);
    EXPECT_EQ(table.Cells[99].X1, 99.0);
}

TEST_F(TitleBlockTest, TextOnAnEdgeLiesOutsideAndTheFirstInsideWins) {
    const AcDbObjectId title = addBlockWithKeys({100, 50, 0}, kAllKeys);
    // The table's items count whatever their result types.
    b.addXrecord(title, CORVANE_TITLE,
                 {ResItem::text(1000, u"设计图号|10|20|30|5|0|0|"), ResItem::text(300, u"图 名|40|20|60|5|0|0|")});
    b.addText(u"on the edge", {110, 60, 0});
    b.addText(u"{\\H2;A-01}", {111, 60, 0});
    b.addText(u"second", {112, 60, 0});
    b.addMText(u"{\\H2;名称}", {159.9, 69.9, 0});
    CString number, name;
    ASSERT_TRUE(readBlock(title, number, name));
    // Text is taken as stored, MText is cleaned.
    EXPECT_EQ(number, u"{\\H2;A-01}");
    EXPECT_EQ(name, u"名称");
}

TEST_F(TitleBlockTest, FirstMatchingCellDecidesEvenWhenEmpty) {
    const AcDbObjectId title = addBlockWithKeys({0, 0, 0}, kAllKeys);
    AddTextRecord(b, title, CORVANE_TITLE, {u"图号|10|20|30|5|0|0|", u"图纸编号|40|20|60|5|0|0|", u"图号|10"});
    b.addText(u"in the second cell", {50, 10, 0});
    CString number, name;
    EXPECT_TRUE(readBlock(title, number, name));
    EXPECT_EQ(number, u"");
    EXPECT_EQ(name, u"");
}

TEST_F(TitleBlockTest, BlocksThatAreNoTitleBlocksOrHaveNoTable) {
    CString number = u"stale", name = u"stale";
    // HORBEGIN_OF_TABLE alone is not enough for the reader.
    const AcDbObjectId begin = addTitle({0, 0, 0}, u"N", u"M", {HORBEGIN_OF_TABLE});
    EXPECT_FALSE(readBlock(begin, number, name));
    EXPECT_EQ(number, u"");
    const AcDbObjectId noTable = addBlockWithKeys({0, 0, 0}, {HORSIZE_OF_DRAWING});
    EXPECT_FALSE(readBlock(noTable, number, name));
    const AcDbObjectId noCells = addBlockWithKeys({0, 0, 0}, {VERNUM_OF_TABLE});
    AddTextRecord(b, noCells, CORVANE_TITLE, {u"$BEGINETITLE", u"A3|x", u"$ENDTITLE"});
    EXPECT_FALSE(readBlock(noCells, number, name));
    AcDbObjectPointer<AcDbBlockReference> reference(noCells, AcDb::kForRead);
    EXPECT_FALSE(QxReadTitleBlock(nullptr, reference.get(), number, name));
}

TEST(TitleBlockChoiceTest, PrimaryWinsWiringIsPassedOverBeginKeyBlockIsEmptyOtherBlocksAreNone) {
    const std::vector<TitleChoice> cases = {
        {"primary wins over wiring", {{u"YC-01", u"一次接线图"}, {u"BZ-01", u"布置图"}}, true, u"YC-01", u"一次接线图"},
        {"wiring is passed over", {{u"DZ-01", u"端子接线图"}, {u"BZ-01", u"布置图"}}, true, u"BZ-01", u"布置图"},
        {"only a wiring title gives false with its texts", {{u"DZ-01", u"端子接线图"}}, false, u"DZ-01", u"端子接线图"},
        {"only the begin key is accepted empty", {{u"N", u"M", {HORBEGIN_OF_TABLE}}, {u"LATER", u"布置图"}}, true, u"",
         u""},
        // A block with other xdata is no title block, its cells and texts notwithstanding.
        {"no title block", {{u"HD", u"布置图", {u"X1"}}}, false, u"", u""},
    };
    for (const TitleChoice& c : cases) {
        SCOPED_TRACE(c.what);
        TitleDrawing d;
        double y = 0;
        for (const TitleSpec& title : c.titles) {
            d.addTitle({0, y, 0}, title.number, title.name, title.keys);
            y += 100;
        }
        CString number = u"stale", name = u"stale";
        EXPECT_EQ(QxGetDwgTitle(&d.b.database(), number, name), c.found);
        EXPECT_EQ(number, c.number);
        EXPECT_EQ(name, c.name);
    }
    CString number = u"stale", name = u"stale";
    EXPECT_FALSE(QxGetDwgTitle(nullptr, number, name));
    EXPECT_EQ(number, u"");
}

TEST_F(TitleBlockTest, StrictTestNeedsAllFiveKeys) {
    const AcDbObjectId all = addBlockWithKeys({0, 0, 0}, kAllKeys);
    const AcDbObjectId withoutX1 =
        addBlockWithKeys({0, 0, 0}, {HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE});
    AcDbObjectPointer<AcDbEntity> first(all, AcDb::kForRead);
    AcDbObjectPointer<AcDbEntity> second(withoutX1, AcDb::kForRead);
    EXPECT_TRUE(QxIsTitleBlock(first.get()));
    EXPECT_FALSE(QxIsTitleBlock(second.get()));
    EXPECT_FALSE(QxIsTitleBlock(nullptr));
}
