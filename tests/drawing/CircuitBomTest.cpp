// The BOM of a circuit block: where an empty record or marker ends the search, the fallback onto the
// reference's own symbol attributes, the result, and the marker test. The scan tests read whole records.
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

TEST_F(CircuitBomTest, EmptyMarkerEndsTheDefinitionAndTheReferenceGivesItsOwnRow) {
    addNestedSymbol(m_panel, u"NESTED", u"N-1", u"");
    addMarker(m_panel);
    const AcDbObjectId panel = addPanel(m_panel);
    b.setXDataStrings(panel, QX_SYMB1_CODE, {u"OWN-CODE"});
    EXPECT_EQ(bomOf(panel).text(), u"false|;|OWN-CODE;|;|1;|;|");
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
    EXPECT_FALSE(isMarker({{0, 0, 1.0}, {1, 0, 1.0}, {0, 1, 1.0}}, true));
    EXPECT_FALSE(isMarker({{0, 0, 1.2}, {0, 1, -1.2}}, true));
    // The test is one-sided: one small bulge is enough.
    EXPECT_TRUE(isMarker({{0, 0, 0.3}, {0, 1, 5.0}}, true));

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
