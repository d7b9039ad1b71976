// The BOM of a circuit block: its record's pair list, the fallbacks into the block definition (marker,
// nested symbols) and onto the reference's own symbol attributes, the result, and the marker test.
#include "DxfFixtures.h"
#include "ReaderDrawings.h"
#include "drawing/bom/BlockKinds.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/title/TitleBlock.h"

#include <gtest/gtest.h>

namespace {

struct CircuitBomRead {
    bool result = false;
    CStringArray types, codes, names, counts, prices, newAddInfo;

    // result|types|codes|names|counts|prices|info, each item followed by ";" so that an empty item shows.
    CString text() const {
        CString out = result ? u"true" : u"false";
        for (const CStringArray* column : {&types, &codes, &names, &counts, &prices, &newAddInfo}) {
            out += u"|";
            for (const CString& item : *column) out += item + u";";
        }
        return out;
    }
};

class CircuitBomTest : public testing::Test {
protected:
    CircuitBomRead bomOf(AcDbObjectId id) {
        CircuitBomRead read;
        AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
        read.result = QxGetCircuitBom(reference.get(), read.types, read.codes, read.names, read.counts, read.prices,
                                      read.newAddInfo);
        return read;
    }
    AcDbObjectId addPanel(AcDbObjectId block) { return b.addInsert(block, {0, 0, 0}); }
    // A marker as the scan adds it: chord 1 around the origin, bulges 1.
    AcDbObjectId addMarker(AcDbObjectId block) {
        return b.addPolyline({{-0.5, 0, 1.0}, {0.5, 0, 1.0}}, true, block);
    }
    AcDbObjectId addNestedSymbol(AcDbObjectId block, const CString& type, const CString& code, const CString& name) {
        const AcDbObjectId symbol = b.addInsert(m_symbol, {1, 1, 0}, block);
        if (!type.IsEmpty()) b.setXDataStrings(symbol, QX_SYMB1_TYPE, {type});
        if (!code.IsEmpty()) b.setXDataStrings(symbol, QX_SYMB1_CODE, {code});
        if (!name.IsEmpty()) b.setXDataStrings(symbol, QX_SYMB1_NAME, {name});
        return symbol;
    }

    DrawingBuilder b;
    AcDbObjectId m_symbol = DefineSquareBlock(b, u"SYMBOL", 2);
    AcDbObjectId m_panel = DefineSquareBlock(b, u"PANEL", 40);
};

} // namespace

TEST(CircuitBomPairsTest, KeysFillTheirColumns) {
    CStringArray types, codes, names, counts, prices;
    CStringArray pairs;
    for (const char16_t* s : {u"型号", u"VS1", u"编码", u"DL-1", u"名称", u"断路器", u"数量", u"3", u"单价", u"9.5",
                              u"型号", u"LZZ", u"数量", u"2.5", u"数量", u"", u"备注", u"x", u"型 号", u"y", u"名称"})
        pairs.Add(s);
    QxParseCircuitBomPairs(pairs, types, codes, names, counts, prices);
    EXPECT_EQ(types, CStringArray({u"VS1", u"LZZ"}));
    EXPECT_EQ(codes, CStringArray({u"DL-1"}));
    // A last key without a value adds nothing.
    EXPECT_EQ(names, CStringArray({u"断路器"}));
    EXPECT_EQ(counts, CStringArray({u"3", u"1", u"1"}));
    EXPECT_EQ(prices, CStringArray({u"9.5"}));
}

TEST_F(CircuitBomTest, RecordOnTheReference) {
    const AcDbObjectId panel = addPanel(m_panel);
    AddTextRecord(b, panel, QX_CIRCUI1_BOMRECORD,
                  {u"型号", u"VS1\\U+221A", u"编码", u"DL-1", u"名称", u"断路器", u"数量", u"2.5", u"型号", u"CT",
                   u"数量", u"3", u"单价", u"1", u"单价", u"2", u"单价", u"3"});
    AddTextRecord(b, panel, QX_CIRCUI1_NewAddInfo, {u"a", u"b"});
    addNestedSymbol(m_panel, u"NESTED", u"N-1", u"");
    // Only the prices are evened out to the types.
    EXPECT_EQ(bomOf(panel).text(), u"true|VS1\u221A;CT;|DL-1;|断路器;|1;3;|1;2;|a;b;");
}

TEST_F(CircuitBomTest, EmptyRecordStopsTheSearchInTheDefinition) {
    const AcDbObjectId panel = addPanel(m_panel);
    b.addXrecord(panel, QX_CIRCUI1_BOMRECORD, {});
    b.setXDataStrings(panel, u"OTHER", {u""});
    addNestedSymbol(m_panel, u"NESTED", u"N-1", u"");
    const AcDbObjectId marker = addMarker(m_panel);
    AddTextRecord(b, marker, QX_CIRCUI1_BOMRECORD, {u"型号", u"MARKER"});
    EXPECT_EQ(bomOf(panel).text(), u"true||||||");

    // The reference's own symbol attributes then give the row; as a first-class symbol it wants no marker.
    b.setXDataStrings(panel, QX_SYMB1_TYPE, {u"OWN"});
    b.setXDataStrings(panel, QX_SYMB1_NAME, {u"自身"});
    EXPECT_EQ(bomOf(panel).text(), u"false|OWN;|;|自身;|1;|;|");
}

TEST_F(CircuitBomTest, MarkerInTheDefinitionHoldsTheRecord) {
    addNestedSymbol(m_panel, u"NESTED", u"N-1", u"");
    const AcDbObjectId decoy = b.addPolyline({{0, 0, 1.0}, {1.2, 0, 1.0}}, true, m_panel);
    AddTextRecord(b, decoy, QX_CIRCUI1_BOMRECORD, {u"型号", u"DECOY"});
    // A marker a scan added, still empty, is passed over.
    b.setXDataStrings(addMarker(m_panel), QX_CIRCUIT1_ADDEDMARKER, {u""});
    const AcDbObjectId marker = addMarker(m_panel);
    AddTextRecord(b, marker, QX_CIRCUI1_BOMRECORD, {u"型号", u"MARKED", u"数量", u"4"});
    AddTextRecord(b, marker, QX_CIRCUI1_NewAddInfo, {u"info"});
    b.setXDataStrings(marker, QX_CIRCUIT1_ADDEDMARKER, {u""});  // added, but since given a record
    AddTextRecord(b, addMarker(m_panel), QX_CIRCUI1_BOMRECORD, {u"型号", u"SECOND"});  // only the first is read
    EXPECT_EQ(bomOf(addPanel(m_panel)).text(), u"true|MARKED;|||4;|;|info;");
}

TEST_F(CircuitBomTest, EmptyMarkerEndsTheDefinitionAndWithoutOneNestedSymbolsGiveTheRows) {
    addNestedSymbol(m_panel, u"NESTED", u"N-1", u"");
    addMarker(m_panel);
    const AcDbObjectId panel = addPanel(m_panel);
    b.setXDataStrings(panel, QX_SYMB1_CODE, {u"OWN-CODE"});
    EXPECT_EQ(bomOf(panel).text(), u"false|;|OWN-CODE;|;|1;|;|");

    // Without a marker the nested symbols give the rows.
    const AcDbObjectId unmarked = DefineSquareBlock(b, u"UNMARKED", 40);
    addNestedSymbol(unmarked, u"VS1", u"", u"断路器");
    addNestedSymbol(unmarked, u"", u"", u"no type and no code");
    addNestedSymbol(unmarked, u"", u"CT-1", u"");
    const AcDbObjectId symbols = addPanel(unmarked);
    b.setXDataStrings(symbols, QX_SYMB1_TYPE, {u"OWN"});
    EXPECT_EQ(bomOf(symbols).text(), u"false|VS1;;|;CT-1;|断路器;;|1;1;|;;|");
}

TEST_F(CircuitBomTest, NothingAnywhereGivesNoRowsAndTheResultTellsCircuitBlocksFromOthers) {
    EXPECT_EQ(bomOf(addPanel(m_panel)).text(), u"true||||||");
    // A reference to a block the drawing does not define has no definition to consult.
    EXPECT_TRUE(bomOf(b.addInsert(AcDbObjectId::kNull, {0, 0, 0})).types.IsEmpty());
    CStringArray t, c, n, k, p, i;
    EXPECT_FALSE(QxGetCircuitBom(nullptr, t, c, n, k, p, i));

    const AcDbObjectId title = addPanel(m_panel);
    for (const char16_t* key : {u"X1", HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE})
        b.setXDataStrings(title, key, {u"1"});
    EXPECT_FALSE(bomOf(title).result);
    const AcDbObjectId second = addPanel(m_panel);
    b.setXDataStrings(second, QX_SYMB2_LABEL, {u"1"});
    EXPECT_FALSE(bomOf(second).result);
    const AcDbObjectId anonymous = addPanel(DefineSquareBlock(b, u"*U3"));
    EXPECT_TRUE(bomOf(anonymous).result);
    b.setXDataStrings(anonymous, QX_SYMB2_PART2LIB, {u"1"});
    EXPECT_FALSE(bomOf(anonymous).result);
    // No area: kind 1, a circuit block all the same.
    const AcDbObjectId flat = b.addInsert(b.defineBlock(u"FLAT"), {0, 0, 0});
    b.setXDataStrings(flat, QX_SYMB1_TYPE, {u"T"});
    EXPECT_TRUE(bomOf(flat).result);
}

TEST(CircuitMarkerTest, SmallCircleOfDiameterOne) {
    DrawingBuilder b;
    auto isMarker = [&b](std::vector<PolylineVertex> vertices, bool closed, AcGePoint3d* centre = nullptr) {
        const AcDbObjectId id = b.addPolyline(vertices, closed);
        AcDbObjectPointer<AcDbEntity> entity(id, AcDb::kForRead);
        AcGePoint3d found;
        const bool result = QxIsCircuitMarker(entity.get(), found);
        if (centre) *centre = found;
        return result;
    };
    AcGePoint3d centre;
    EXPECT_TRUE(isMarker({{10, 20, 1.0}, {11.05, 20, 1.0}}, true, &centre));
    EXPECT_DOUBLE_EQ(centre.x, 10.525);
    EXPECT_DOUBLE_EQ(centre.y, 20.0);
    EXPECT_EQ(centre.z, 0.0);
    EXPECT_FALSE(isMarker({{0, 0, 1.0}, {1.2, 0, 1.0}}, true));
    EXPECT_FALSE(isMarker({{0, 0, 1.0}, {1, 0, 1.0}}, false));
    EXPECT_FALSE(isMarker({{0, 0, 1.0}, {1, 0, 1.0}, {0, 1, 1.0}}, true));
    EXPECT_FALSE(isMarker({{0, 0, 1.2}, {0, 1, -1.2}}, true));
    // One bulge near 1 is enough, and the test is one-sided: a small bulge passes too.
    EXPECT_TRUE(isMarker({{0, 0, 0.0}, {0, 1, -1.05}}, true));
    EXPECT_TRUE(isMarker({{0, 0, 0.3}, {0, 1, 5.0}}, true));
    AcDbObjectPointer<AcDbEntity> text(b.addText(u"x", {0, 0, 0}), AcDb::kForRead);
    EXPECT_FALSE(QxIsCircuitMarker(text.get(), centre));

    // The marker as an old-style 2D POLYLINE: the host makes it light-weight when it opens an R12 file,
    // and keeps it as it is in a later one, where it is then no marker.
    for (const auto& [file, marker] : {std::pair{"oldmarker_r12.dxf", true}, {"oldmarker_r2000.dxf", false}}) {
        const auto db = ReadFixture(file);
        const auto inside = BlockEntities(db.get(), u"CIR");
        ASSERT_EQ(inside.size(), 1u) << file;
        EXPECT_EQ(QxIsCircuitMarker(inside[0], centre), marker) << file;
        AcDbExtents extents;
        ASSERT_EQ(inside[0]->getGeomExtents(extents), Acad::eOk) << file;
        EXPECT_DOUBLE_EQ(extents.maxPoint().y, 0.5) << file;
    }
}
