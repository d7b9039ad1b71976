// Typed reads of xdata by group-code kind.
#include "drawing/model/DrawingBuilder.h"
#include "support/XDataHelpers.h"

#include <gtest/gtest.h>

TEST(XDataHelpersTest, FirstItemOfTheCodeReadAsItsKindAndApplicationsByName) {
    DrawingBuilder b;
    const AcDbObjectId id = b.addMText(u"cell", {});
    b.setXData(id, u"QX_ALL", {ResItem::text(1000, u"first"), ResItem::text(1000, u"second"),
                               ResItem::text(1005, u"2A"), ResItem::point(1010, {1, 2, 3}),
                               ResItem::real(1040, 2.5), ResItem::integer(1070, -7), ResItem::integer(1071, 70000)});
    const AcDbObject* cell = id.objectUnchecked();

    CString text = u"untouched";
    EXPECT_TRUE(GetXDataValue(cell, u"qx_all", 1000, text));
    EXPECT_EQ(text, u"first");
    EXPECT_TRUE(GetXDataValue(cell, u"QX_ALL", 1005, text));
    EXPECT_EQ(text, u"2A");

    XDataValue value;
    ASSERT_TRUE(GetXDataValue(cell, u"QX_ALL", 1010, value));
    EXPECT_EQ(value.kind, XDataKind::Point);
    EXPECT_EQ(value.point, (AcGePoint3d{1, 2, 3}));
    ASSERT_TRUE(GetXDataValue(cell, u"QX_ALL", 1040, value));
    EXPECT_EQ(value.kind, XDataKind::Real);
    EXPECT_EQ(value.real, 2.5);
    ASSERT_TRUE(GetXDataValue(cell, u"QX_ALL", 1070, value));
    EXPECT_EQ(value.kind, XDataKind::Integer16);
    EXPECT_EQ(value.integer, -7);
    ASSERT_TRUE(GetXDataValue(cell, u"QX_ALL", 1071, value));
    EXPECT_EQ(value.kind, XDataKind::Integer32);
    EXPECT_EQ(value.integer, 70000);

    // Absent code, absent application, or a text read of a number: false, output as it was.
    text = u"kept";
    EXPECT_FALSE(GetXDataValue(cell, u"QX_ALL", 1002, text));
    EXPECT_FALSE(GetXDataValue(cell, u"NONE", 1000, text));
    EXPECT_FALSE(GetXDataValue(cell, u"QX_ALL", 1040, text));
    EXPECT_FALSE(GetXDataValue(nullptr, u"QX_ALL", 1000, text));
    EXPECT_EQ(text, u"kept");

    EXPECT_EQ(XDataKindOfCode(1009), XDataKind::Text);
    EXPECT_EQ(XDataKindOfCode(1039), XDataKind::Point);
    EXPECT_EQ(XDataKindOfCode(1059), XDataKind::Real);
    EXPECT_EQ(XDataKindOfCode(1060), XDataKind::Integer16);
    EXPECT_EQ(XDataKindOfCode(1072), XDataKind::Text);

    EXPECT_TRUE(HasXData(cell, u"qx_all"));
    EXPECT_FALSE(HasXData(cell, u"QX_AL"));
    EXPECT_FALSE(HasXData(cell, u""));
    EXPECT_FALSE(HasXData(nullptr, u"QX_ALL"));
}
