// Title blocks: the cell table, the rectangles searched for the number and name, and which title block
// of a drawing is accepted.
#include "ReaderDrawings.h"
#include "drawing/title/TitleBlock.h"
#include "drawing/title/TitleCellTable.h"

#include <gtest/gtest.h>

#include <sstream>

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

    // result|number|name, read into texts that were not empty before.
    CString readBlock(AcDbObjectId title, AcDbDatabase* database) {
        AcDbObjectPointer<AcDbBlockReference> reference(title, AcDb::kForRead);
        CString number = u"stale", name = u"stale";
        const bool result = QxReadTitleBlock(database, reference.get(), number, name);
        return (result ? u"true|" : u"false|") + number + u"|" + name;
    }
    CString readBlock(AcDbObjectId title) { return readBlock(title, &b.database()); }
    static CString readTitle(AcDbDatabase* database) {
        CString number = u"stale", name = u"stale";
        const bool result = QxGetDwgTitle(database, number, name);
        return (result ? u"true|" : u"false|") + number + u"|" + name;
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
    CString title;  // result|number|name
};

std::string cellText(const TitleCell& cell) {
    std::ostringstream text;
    text << cell.Name << "|" << cell.X1 << "|" << cell.Y1 << "|" << cell.X2 << "|" << cell.Y2 << "|" << cell.Param1
         << "|" << cell.Param2 << "|" << cell.Value;
    return text.str();
}

} // namespace

TEST(TitleCellTableTest, JunkReadsAsZeroAndTheTableIsBounded) {
    // Junk reads as 0, a number with junk behind it as the number.
    EXPECT_EQ(cellText(ParseTitleCellLine(u"图名|abc|12mm| 7|||")), "图名|0|12|7|0|0|0|");

    CStringArray items;
    for (int i = 0; i < 150; ++i) items.Add(CString(u"cell|") + CString(std::to_string(i)) + u"|0|0|0|0|0|");
    const TitleCellTable full = ParseTitleCellTable(items, {});
    ASSERT_EQ(full.Cells.GetSize(), TitleCellTable::kMaxCells);
    EXPECT_EQ(full.Cells[99].X1, 99.0);
}

// Text on a cell's edge lies outside and the first text inside wins;
// blocks that are no title blocks or have no table read nothing.
TEST_F(TitleBlockTest, CellsSearchedForTheTextsOfTitleBlocksOnly) {
    const AcDbObjectId title = addBlockWithKeys({100, 50, 0}, kAllKeys);
    // The table's items count whatever their result types.
    b.addXrecord(title, CORVANE_TITLE,
                 {ResItem::text(1000, u"设计图号|10|20|30|5|0|0|"), ResItem::text(300, u"图 名|40|20|60|5|0|0|")});
    b.addText(u"on the edge", {110, 60, 0});
    b.addText(u"{\\H2;A-01}", {111, 60, 0});
    b.addText(u"second", {112, 60, 0});
    b.addMText(u"{\\H2;名称}", {159.9, 69.9, 0});
    // Text is taken as stored, MText is cleaned.
    EXPECT_EQ(readBlock(title), u"true|{\\H2;A-01}|名称");

    // Blocks that are no title blocks or have no table.
    // HORBEGIN_OF_TABLE alone is not enough for the reader.
    EXPECT_EQ(readBlock(addTitle({0, 0, 0}, u"N", u"M", {HORBEGIN_OF_TABLE})), u"false||");
    EXPECT_EQ(readBlock(addBlockWithKeys({0, 0, 0}, {HORSIZE_OF_DRAWING})), u"false||");
    const AcDbObjectId noCells = addBlockWithKeys({0, 0, 0}, {VERNUM_OF_TABLE});
    AddTextRecord(b, noCells, CORVANE_TITLE, {u"$BEGINETITLE", u"A3|x", u"$ENDTITLE"});
    EXPECT_EQ(readBlock(noCells), u"false||");
    EXPECT_EQ(readBlock(noCells, nullptr), u"false||");
}

TEST(TitleBlockChoiceTest, PrimaryWinsWiringIsPassedOverBeginKeyBlockIsEmptyOtherBlocksAreNone) {
    const std::vector<TitleChoice> cases = {
        {"primary wins over wiring", {{u"YC-01", u"一次接线图"}, {u"BZ-01", u"布置图"}}, u"true|YC-01|一次接线图"},
        {"wiring is passed over", {{u"DZ-01", u"端子接线图"}, {u"BZ-01", u"布置图"}}, u"true|BZ-01|布置图"},
        {"only a wiring title gives false with its texts", {{u"DZ-01", u"端子接线图"}}, u"false|DZ-01|端子接线图"},
        {"only the begin key is accepted empty", {{u"N", u"M", {HORBEGIN_OF_TABLE}}, {u"LATER", u"布置图"}}, u"true||"},
        // A block with other xdata is no title block, its cells and texts notwithstanding.
        {"no title block", {{u"HD", u"布置图", {u"X1"}}}, u"false||"},
    };
    for (const TitleChoice& c : cases) {
        SCOPED_TRACE(c.what);
        TitleDrawing d;
        double y = 0;
        for (const TitleSpec& title : c.titles) {
            d.addTitle({0, y, 0}, title.number, title.name, title.keys);
            y += 100;
        }
        EXPECT_EQ(TitleDrawing::readTitle(&d.b.database()), c.title);
    }
    EXPECT_EQ(TitleDrawing::readTitle(nullptr), u"false||");
}
