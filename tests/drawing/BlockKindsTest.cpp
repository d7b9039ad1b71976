// Kinds of block references, tested in their order, and the attributes of first-class symbols.
#include "ReaderDrawings.h"
#include "drawing/bom/BlockKinds.h"

#include <gtest/gtest.h>

namespace {

class BlockKindsTest : public testing::Test {
protected:
    int kindOf(AcDbObjectId id) {
        AcDbObjectPointer<AcDbEntity> entity(id, AcDb::kForRead);
        return QxClassifyBlock(entity.get());
    }
    AcDbObjectId insertOf(const CString& blockName) {
        DefineSquareBlock(b, blockName);
        return b.addInsert(blockName, {5, 5, 0});
    }

    DrawingBuilder b;
};

} // namespace

// Class and extents come first, anonymous blocks are told before symbol keys, and a second-class label wins
// over first-class keys.
TEST_F(BlockKindsTest, KindsAreTestedInTheirOrder) {
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

    const AcDbObjectId multi = insertOf(u"*U12");
    b.setXDataStrings(multi, QX_SYMB2_MULTI, {u"1"});
    b.setXDataStrings(multi, QX_SYMB2_PART2LIB, {u"1"});
    EXPECT_EQ(kindOf(multi), kAnonymousMulti);
    const AcDbObjectId part = insertOf(u"*u13");
    b.setXDataStrings(part, QX_SYMB2_PART2LIB, {u"1"});
    EXPECT_EQ(kindOf(part), kAnonymousPart2Lib);
    const AcDbObjectId labelled = insertOf(u"*U14");
    b.setXDataStrings(labelled, QX_SYMB2_LABEL, {u"1"});
    EXPECT_EQ(kindOf(labelled), kAnonymousOther);

    const AcDbObjectId both = insertOf(u"KA");
    b.setXDataStrings(both, QX_SYMB1_TYPE, {u"T"});
    b.setXDataStrings(both, QX_SYMB2_LABEL, {u"1"});
    EXPECT_EQ(kindOf(both), kSecondClassSymbol);
    DefineSquareBlock(b, u"QF");
    for (const char16_t* key : {QX_SYMB1_LABEL, QX_SYMB1_TYPE, QX_SYMB1_CODE, QX_SYMB1_NAME}) {
        const AcDbObjectId symbol = b.addInsert(u"QF", {0, 0, 0});
        b.setXDataStrings(symbol, key, {u""});
        EXPECT_EQ(kindOf(symbol), kFirstClassSymbol) << CString(key);
    }
    const AcDbObjectId plain = b.addInsert(u"QF", {0, 0, 0});
    b.setXDataStrings(plain, u"OTHER_APP", {u"1"});
    EXPECT_EQ(kindOf(plain), kOtherBlock);
}

TEST_F(BlockKindsTest, SymbolAttributesOnlyOfBlockReferences) {
    const AcDbObjectId symbol = insertOf(u"QF");
    b.setXDataStrings(symbol, QX_SYMB1_TYPE, {u"VS1-12", u"second"});
    b.setXDataStrings(symbol, QX_SYMB1_CODE, {u"DL-1000"});
    const AcDbObjectId text = b.addMText(u"x", {0, 0, 0});
    b.setXDataStrings(text, QX_SYMB1_TYPE, {u"VS1-12"});
    AcDbObjectPointer<AcDbEntity> reference(symbol, AcDb::kForRead);
    AcDbObjectPointer<AcDbEntity> mtext(text, AcDb::kForRead);
    EXPECT_EQ(QxGetSymbType(reference.get()), u"VS1-12");
    EXPECT_EQ(QxGetSymbCode(reference.get()), u"DL-1000");
    EXPECT_EQ(QxGetSymbName(reference.get()), u"");
    EXPECT_EQ(QxGetSymbType(mtext.get()), u"");
    EXPECT_EQ(QxGetSymbType(nullptr), u"");
}
