// Part records of a drawing with many labels: each group of a label record once held a copy of every
// value (a long merged-labels line inherited by thousands of groups ran out of memory), and every label
// was looked for in all records made before it.
#include "drawing/bom/BomTableKeys.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/parts/GetPartInfo.h"

#include <gtest/gtest.h>

namespace {

// A label cell whose number cell links back to it, so that its row counts.
AcDbObjectId addCountedCell(DrawingBuilder& builder, const CString& number) {
    const AcDbObjectId anchor = builder.addMText(u"L", {0, 0, 0});
    builder.setXDataStrings(anchor, QXBOM_LABEL, {u"L"});
    const AcDbObjectId cell = builder.addMText(number, {0, 0, 0});
    builder.setXDataLinks(anchor, QXBOM_LABEL_NOHANDLE, {cell});
    builder.setXDataLinks(cell, QXBOM_NO_LABELHANDLE, {anchor});
    return anchor;
}

ResItems lines(const std::vector<CString>& texts) {
    ResItems items;
    for (const CString& text : texts) items.push_back(ResItem::text(1, text));
    return items;
}

} // namespace

TEST(PartRecordsGrowthTest, ManyLabelsInOneCellAndManyCells) {
    constexpr int kGroups = 40'000;
    constexpr int kCells = 60'000;
    DrawingBuilder builder;

    // One cell: one group per label, all of them inheriting the merged labels (about 300,000 characters)
    // that the first group states.
    std::vector<CString> record;
    CString merged = u"合并过的标号数组:";
    for (int i = 0; i < kGroups; ++i) merged += CString(u"G") + CString(std::to_string(i)) + u",";
    for (int i = 0; i < kGroups; ++i) {
        record.push_back(CString(u"标号:G") + CString(std::to_string(i)));
        if (i == 0) record.push_back(merged);
    }
    builder.addXrecord(addCountedCell(builder, u"1"), u"QXBOM_LABEL", lines(record));

    // Many cells, each with a label of its own and a component for it.
    for (int i = 0; i < kCells; ++i) {
        const AcDbObjectId cell = addCountedCell(builder, u"2");
        const CString label = CString(u"标号:C") + CString(std::to_string(i));
        builder.addXrecord(cell, u"QXBOM_LABEL", lines({label}));
        builder.addXrecord(cell, u"QXBOM_COMPONENT", lines({label, u"名称:n"}));
    }

    CPartBomDataBaseArray parts;
    ASSERT_TRUE(CGetPartInfo().GetPartsOfDatabase(&builder.database(), u"X:\\d.dwg", 1, u"", parts));
    ASSERT_EQ(parts.GetSize(), kGroups + kCells);
    EXPECT_EQ(parts[kGroups - 1]->Label, CString(u"G") + CString(std::to_string(kGroups - 1)));
    EXPECT_EQ(parts[kGroups - 1]->MergedLabels.get().GetLength(), merged.GetLength() - 9);
    EXPECT_EQ(parts[kGroups + kCells - 1]->PartBoms[0]->Components.GetSize(), 1);
    QxFreePartBoms(parts);
}
