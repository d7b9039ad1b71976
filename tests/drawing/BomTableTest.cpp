// The BOM table of a secondary drawing: anchors, the link rule with its back links, cell texts, codes
// and the order of rows.
#include "ReaderDrawings.h"
#include "drawing/bom/BomOfDwg.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/bom/DwgBomRows.h"

#include <gtest/gtest.h>

namespace {

struct LabelRow {
    AcDbObjectId label, number, type, name, count, note;
};

class BomTableTest : public testing::Test {
protected:
    BomColumnsRead read() {
        BomColumnsRead c;
        QxGetDatabaseBomRows(&b.database(), c.names, c.types, c.counts, c.codes, c.prices, c.kinds, c.labels, c.notes,
                             c.extras);
        return c;
    }

    void link(AcDbObjectId from, const char16_t* forward, AcDbObjectId to, const char16_t* back) {
        b.setXDataLinks(from, forward, {to});
        b.setXDataLinks(to, back, {from});
    }

    // A full row anchored on its label, every cell linked both ways.
    LabelRow addLabelRow(const CString& label, const CString& type, const CString& name, const CString& count,
                         const CString& note, double y = 0.0) {
        LabelRow row;
        row.label = b.addMText(label, {0, y, 0});
        row.number = b.addMText(u"1", {10, y, 0});
        row.type = b.addMText(type, {20, y, 0});
        row.name = b.addMText(name, {30, y, 0});
        row.count = b.addMText(count, {40, y, 0});
        row.note = b.addMText(note, {50, y, 0});
        b.setXDataStrings(row.label, QXBOM_LABEL, {label});
        link(row.label, QXBOM_LABEL_NOHANDLE, row.number, QXBOM_NO_LABELHANDLE);
        link(row.label, QXBOM_LABEL_TYPEHANDLE, row.type, QXBOM_TYPE_LABELHANDLE);
        link(row.label, QXBOM_LABEL_NAMEHANDLE, row.name, QXBOM_NAME_LABELHANDLE);
        link(row.label, QXBOM_LABEL_COUNTHANDLE, row.count, QXBOM_COUNT_LABELHANDLE);
        link(row.label, QXBOM_LABEL_NOTEHANDLE, row.note, QXBOM_NOTE_LABELHANDLE);
        return row;
    }

    DrawingBuilder b;
};

} // namespace

TEST_F(BomTableTest, EachAnchorReadsItsLinkedCellsCleanedButATypeAnchorKeepsItsOwnText) {
    const LabelRow row = addLabelRow(u"{\\H2;1QF}", u"DZ47\\P-60", u"{\\fSimSun;微型断路器}", u"2", u"备用");
    b.setXDataStrings(row.type, QXBOM_CODE, {u"ZK-0601"});
    b.setXDataStrings(row.type, QXBOM_PRICE, {u"12.5"});
    // One blank is an empty cell, two blanks stay.
    addLabelRow(u"2QF", u"T", u" ", u"  ", u"\\H2; ", 10);

    const AcDbObjectId type = b.addMText(u"{\\fA;X}\\PY", {0, 20, 0});
    const AcDbObjectId name = b.addMText(u"{\\H2;接触器}", {10, 20, 0});
    const AcDbObjectId label = b.addMText(u"KM1", {20, 20, 0});
    b.setXDataStrings(type, QXBOM_TYPE, {u""});
    b.setXDataStrings(type, QXBOM_PRICE, {u"30"});
    link(type, QXBOM_TYPE_NAMEHANDLE, name, QXBOM_NAME_TYPEHANDLE);
    link(type, QXBOM_TYPE_LABELHANDLE, label, QXBOM_LABEL_TYPEHANDLE);

    // A cell with both keys is a label anchor; a type anchor reached from a label is cleaned, and having
    // no name link of its own kind it reaches the label by its back link.
    const LabelRow typed = addLabelRow(u"1KA", u"{\\fA;X}", u"继电器", u"1", u" ", 30);
    b.setXDataStrings(typed.type, QXBOM_TYPE, {u""});
    const LabelRow both = addLabelRow(u"1HD", u"AD16", u"指示灯", u"1", u"", 40);
    b.setXDataStrings(both.label, QXBOM_TYPE, {u""});
    // The type anchor's braces and codes stay; only paragraph breaks go. Without a code, the type stands in.
    EXPECT_EQ(read().rows(), (std::vector<CString>{u"1QF|DZ47-60|微型断路器|2|备用|ZK-0601|12.5|Symb2|",
                                                   u"2QF|T||  ||T||Symb2|", u"KM1|{\\fA;X}Y|接触器|||{\\fA;X}Y|30|Symb1|",
                                                   u"1KA|X|继电器|1||X||Symb2|", u"1KA|{\\fA;X}||||{\\fA;X}||Symb1|",
                                                   u"1HD|AD16|指示灯|1||AD16||Symb2|"}));
}

TEST_F(BomTableTest, LinksWithoutBackLinksAndBrokenHandlesGiveEmptyCells) {
    const LabelRow row = addLabelRow(u"1QF", u"T", u"N", u"3", u"note");
    // The name cell links back to another cell, the count cell lost its back link, the note link is "0".
    const AcDbObjectId stranger = b.addMText(u"other", {0, 50, 0});
    b.setXDataLinks(row.name, QXBOM_NAME_LABELHANDLE, {stranger});
    b.setXData(row.count, QXBOM_COUNT_LABELHANDLE, {});
    SetRawLink(b, row.label, QXBOM_LABEL_NOTEHANDLE, u"0");

    const LabelRow broken = addLabelRow(u"2QF", u"T", u"N", u"3", u"note", 10);
    b.setXDataStrings(broken.type, QXBOM_CODE, {u"C1"});
    SetRawLink(b, broken.label, QXBOM_LABEL_NAMEHANDLE, u"FFFFFF");  // no such object
    SetRawLink(b, broken.label, QXBOM_LABEL_COUNTHANDLE, u"not hex");
    SetRawLink(b, broken.label, QXBOM_LABEL_NOTEHANDLE, u"");
    // A single-line text is no cell, even when it links back.
    const AcDbObjectId text = b.addText(u"plain", {0, 60, 0});
    link(broken.label, QXBOM_LABEL_NOHANDLE, text, QXBOM_NO_LABELHANDLE);
    // The type cell is erased: its code and price go with it, and the code falls back on the empty type.
    b.erase(broken.type);
    EXPECT_EQ(read().rows(), (std::vector<CString>{u"1QF|T||||T||Symb2|", u"2QF|||||||Symb2|"}));
}

TEST_F(BomTableTest, LinkCyclesAndSelfLinksAreReadOnce) {
    // Two label anchors whose type links lead to each other, both linking back: each reads the other.
    const AcDbObjectId a = b.addMText(u"A", {0, 0, 0});
    const AcDbObjectId c2 = b.addMText(u"B", {0, 10, 0});
    b.setXDataStrings(a, QXBOM_LABEL, {u""});
    b.setXDataStrings(c2, QXBOM_LABEL, {u""});
    link(a, QXBOM_LABEL_TYPEHANDLE, c2, QXBOM_TYPE_LABELHANDLE);
    link(c2, QXBOM_LABEL_TYPEHANDLE, a, QXBOM_TYPE_LABELHANDLE);
    // A cell that is its own name cell.
    link(a, QXBOM_LABEL_NAMEHANDLE, a, QXBOM_NAME_LABELHANDLE);
    EXPECT_EQ(read().rows(), (std::vector<CString>{u"A|B|A|||B||Symb2|", u"B|A||||A||Symb2|"}));
}

TEST_F(BomTableTest, RowsComeInDrawingOrderFromModelSpaceOnly) {
    addLabelRow(u"2", u"T2", u"N2", u"1", u"", 10);
    b.addMText(u"no keys", {0, 5, 0});
    const LabelRow gone = addLabelRow(u"gone", u"T", u"N", u"1", u"", 20);
    b.erase(gone.label);
    addLabelRow(u"1", u"T1", u"N1", u"1", u"", 0);
    // An anchor inside a block definition is not part of the table.
    const AcDbObjectId block = b.defineBlock(u"CELLS");
    const AcDbObjectId inside = b.addMText(u"in block", {0, 0, 0}, block);
    b.setXDataStrings(inside, QXBOM_LABEL, {u""});
    // Nor is a single-line text, whatever keys it carries.
    const AcDbObjectId text = b.addText(u"text", {0, 30, 0});
    b.setXDataStrings(text, QXBOM_LABEL, {u"text"});
    b.setXDataStrings(text, QXBOM_TYPE, {u"text"});
    EXPECT_EQ(read().rows(), (std::vector<CString>{u"2|T2|N2|1||T2||Symb2|", u"1|T1|N1|1||T1||Symb2|"}));
}

TEST(BomOfDwgTest, FreeingEmptiesTheListAndADrawingThatDoesNotOpenGivesNoRows) {
    CBomOfDwgArray list;
    for (int i = 0; i < 3; ++i) {
        auto* bom = new CBomOfDwg;
        bom->Path = u"C:\\a.dwg";
        bom->Names.Add(u"x");
        list.Add(bom);
    }
    QxFreeBomOfDwgs(list);
    EXPECT_TRUE(list.IsEmpty());
    QxFreeBomOfDwgs(list);
    EXPECT_TRUE(list.IsEmpty());

    BomColumnsRead c;
    EXPECT_FALSE(QxGetDwgBomRows(u"\\no\\such\\drawing.dwg", c.names, c.types, c.counts, c.codes, c.prices, c.kinds,
                                 c.labels, c.notes, c.extras));
    EXPECT_EQ(c.size(), 0);
}
