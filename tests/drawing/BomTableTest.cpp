// The BOM table of a secondary drawing: anchors, the link rule with its back links, cell texts and codes.
// Broken links, the order of rows and unreadable drawings are read from the readers' fixtures
// (ReaderFixturesTest, ReaderViewsTest) and in the scans.
#include "ReaderDrawings.h"
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
