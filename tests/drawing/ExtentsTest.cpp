// Geometric extents: block references measured through their definitions.
#include "DxfFixtures.h"
#include "drawing/bom/BlockKinds.h"
#include "drawing/model/DrawingBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::string extentsOf(AcDbObjectId id) { return ExtentsText(AcDbEntity::cast(id.objectUnchecked())); }

} // namespace

// Inserts measured through scale, rotation and base point; arcs, bulges, text and nested inserts; empty,
// missing and cyclic definitions.
TEST(ExtentsTest, InsertsArcsBulgesTextNestedAndEmptyMissingOrCyclicDefinitions) {
    DrawingBuilder b;
    const AcDbObjectId block = b.defineBlock(u"B", {1, 1, 0});
    b.addLine({1, 1, 0}, {3, 2, 0}, block);
    b.addCircle({1, 1, 0}, 0.5, block);

    EXPECT_EQ(extentsOf(b.addInsert(block, {10, 20, 0})), "9.5,19.5 12,21");
    // Mirrored in x and doubled in y.
    EXPECT_EQ(extentsOf(b.addInsert(block, {0, 0, 0}, {}, {-1, 2, 1})), "-2,-1 0.5,2");
    // A quarter turn: (2, 1) relative to the base goes to (-1, 2); the circle stays round.
    EXPECT_EQ(extentsOf(b.addInsert(block, {0, 0, 0}, {}, {1, 1, 1}, AcGe::kPi / 2)), "-1,-0.5 0.5,2");

    const AcDbObjectId inner = b.defineBlock(u"INNER");
    b.addArc({0, 0, 0}, 1.0, 0.0, AcGe::kPi / 2, inner);  // first quadrant only
    EXPECT_EQ(extentsOf(b.addInsert(inner, {})), "0,0 1,1");

    const AcDbObjectId outer = b.defineBlock(u"OUTER");
    b.addInsert(inner, {5, 0, 0}, outer, {2, 2, 2});
    b.addText(u"t", {-1, -1, 0}, outer);
    EXPECT_EQ(extentsOf(b.addInsert(outer, {100, 0, 0})), "99,-1 107,2");

    // The circuit marker: a closed two-vertex polyline with bulges 1 is a circle of diameter 1.
    const AcDbObjectId marker = b.addPolyline({{-0.5, 0, 1}, {0.5, 0, 1}}, true);
    EXPECT_EQ(extentsOf(marker), "-0.5,-0.5 0.5,0.5");
    // Left to right, a clockwise half circle passes above the chord and a counter-clockwise one below.
    EXPECT_EQ(extentsOf(b.addPolyline({{0, 0, -1}, {2, 0, 0}}, false)), "0,0 2,1");
    EXPECT_EQ(extentsOf(b.addPolyline({{0, 0, 1}, {2, 0, 0}}, false)), "0,-1 2,0");

    // Empty and missing definitions give no extents; a cycle of definitions is measured once around.
    AcDbExtents e;
    const AcDbObjectId empty = b.defineBlock(u"EMPTY");
    EXPECT_EQ(AcDbEntity::cast(b.addInsert(empty, {}).objectUnchecked())->getGeomExtents(e), Acad::eInvalidExtents);
    EXPECT_EQ(AcDbEntity::cast(b.addInsert(u"NOSUCH", {}).objectUnchecked())->getGeomExtents(e),
              Acad::eInvalidExtents);

    const AcDbObjectId a = b.defineBlock(u"A");
    const AcDbObjectId c = b.defineBlock(u"C");
    b.addInsert(c, {}, a);
    b.addInsert(a, {}, c);
    b.addLine({0, 0, 0}, {1, 1, 0}, c);
    EXPECT_EQ(extentsOf(b.addInsert(a, {})), "0,0 1,1");
}

TEST(ExtentsTest, NestedDefinitionsAreMeasuredAgainAfterTheDrawingChanges) {
    DrawingBuilder b;
    const AcDbObjectId inner = b.defineBlock(u"INNER");
    b.addLine({0, 0, 0}, {1, 1, 0}, inner);
    const AcDbObjectId outer = b.defineBlock(u"OUTER");
    b.addInsert(inner, {10, 0, 0}, outer);
    const AcDbObjectId top = b.addInsert(outer, {});
    EXPECT_EQ(extentsOf(top), "10,0 11,1");

    // A marker appended to the nested definition, as the scan does, counts at once.
    AcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, inner, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId marker;
    ASSERT_EQ(record->appendAcDbEntity(marker, std::make_unique<AcDbLine>(AcGePoint3d{0, 0, 0}, AcGePoint3d{3, -2, 0})),
              Acad::eOk);
    record->close();
    EXPECT_EQ(extentsOf(top), "10,-2 13,1");

    b.erase(marker);
    EXPECT_EQ(extentsOf(top), "10,0 11,1");

    // An entity of the nested definition opened for write and moved.
    AcDbLine* line = nullptr;
    ASSERT_EQ(acdbOpenObject(line, AcDbBlockTableRecord::cast(inner.objectUnchecked())->entityIds().front(),
                             AcDb::kForWrite),
              Acad::eOk);
    line->setEndPoint({5, 1, 0});
    line->close();
    EXPECT_EQ(extentsOf(top), "10,0 15,1");
}

// Definitions that hold nothing but text or curves without vertices of their own: a labelled symbol of
// that kind has an area, and so is a first-class symbol.
TEST(ExtentsTest, TextEllipsesSplinesAndHatchesGiveTheirBoxes) {
    const auto db = ReadFixture("shapes_r2000.dxf");
    ASSERT_NE(db, nullptr);
    const auto symbols = EntitiesOf(db->modelSpaceId());
    const std::pair<const char*, const char*> expected[] = {
        {"ONLY_TEXT", "1,2 7,5"},                 // three narrow characters of height 3 from (1, 2)
        {"ONLY_MTEXT", "100,0 106,5.333333"},     // three wide characters, two lines, bottom left at the location
        {"ONLY_ELLIPSE", "196,0 204,2"},          // the upper half of an ellipse of axes 4 and 2
        {"ONLY_SPLINE", "300,-1 305,3"},          // its fit points
        {"ONLY_HATCH", "400,0 406,2"},            // a polyline path
        {"ONLY_EDGE_HATCH", "500,-1 502,1"},      // a line and the circle of a half-circle edge
    };
    ASSERT_EQ(symbols.size(), std::size(expected));
    for (size_t i = 0; i < symbols.size(); ++i) {
        SCOPED_TRACE(expected[i].first);
        EXPECT_EQ(extentsOf(symbols[i]->objectId()), expected[i].second);
        EXPECT_EQ(QxClassifyBlock(symbols[i]), kFirstClassSymbol);
    }
}
