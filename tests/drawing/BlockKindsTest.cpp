// Kinds of block references: what is no block reference, and a reference without area, are told before
// any xdata. The kinds that xdata tells are read through the circuit BOM's result (CircuitBomTest) and the
// scans of the primary diagram.
#include "drawing/bom/BlockKinds.h"
#include "drawing/model/DrawingBuilder.h"

#include <gtest/gtest.h>

TEST(BlockKindsTest, NoBlockReferenceAndNoAreaAreToldBeforeAnyXData) {
    DrawingBuilder b;
    auto kindOf = [](AcDbObjectId id) {
        AcDbObjectPointer<AcDbEntity> entity(id, AcDb::kForRead);
        return QxClassifyBlock(entity.get());
    };
    EXPECT_EQ(kindOf(b.addMText(u"x", {0, 0, 0})), kNotBlockReference);
    EXPECT_EQ(QxClassifyBlock(nullptr), kNotBlockReference);
    // A definition that is flat in y gives no area, whatever the xdata says.
    const AcDbObjectId flat = b.defineBlock(u"FLAT");
    b.addLine({0, 0, 0}, {10, 0, 0}, flat);
    const AcDbObjectId flatInsert = b.addInsert(flat, {0, 0, 0});
    b.setXDataStrings(flatInsert, QX_SYMB2_LABEL, {u"1"});
    EXPECT_EQ(kindOf(flatInsert), kEmptyExtents);
    EXPECT_EQ(kindOf(b.addInsert(b.defineBlock(u"EMPTY"), {0, 0, 0})), kEmptyExtents);
    // A reference to a block the drawing does not define.
    EXPECT_EQ(kindOf(b.addInsert(AcDbObjectId::kNull, {0, 0, 0})), kEmptyExtents);
}
