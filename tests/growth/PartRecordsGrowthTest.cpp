// Part records of a label cell with very many labels: each group of its label record once held a copy of
// every value (a long merged-labels line, inherited by every group, ran out of memory), and every label
// and every component was looked for in all the records made before it.
#include "drawing/bom/BomTableKeys.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/parts/GetPartInfo.h"

#include <gtest/gtest.h>

#include <string>

namespace {

ResItems lines(const std::vector<CString>& texts) {
    ResItems items;
    for (const CString& text : texts) items.push_back(ResItem::text(1, text));
    return items;
}

} // namespace

TEST(PartRecordsGrowthTest, OneCellOfVeryManyLabelsAndComponents) {
    constexpr int kLabels = 150'000;
    DrawingBuilder builder;
    const AcDbObjectId anchor = builder.addMText(u"L", {0, 0, 0});
    builder.setXDataStrings(anchor, QXBOM_LABEL, {u"L"});
    const AcDbObjectId number = builder.addMText(u"1", {0, 0, 0});
    builder.setXDataLinks(anchor, QXBOM_LABEL_NOHANDLE, {number});
    builder.setXDataLinks(number, QXBOM_NO_LABELHANDLE, {anchor});

    // One group per label, all of them inheriting the merged labels (about a million characters) that the
    // first group states; one component for each label.
    std::vector<CString> labels;
    std::vector<CString> components;
    CString merged = u"合并过的标号数组:";
    for (int i = 0; i < kLabels; ++i) {
        const CString label = CString(u"标号:K") + CString(std::to_string(i));
        merged += label.Mid(3) + u",";
        labels.push_back(label);
        components.push_back(label);
        components.push_back(u"名称:n");
    }
    labels.insert(labels.begin() + 1, merged);
    builder.addXrecord(anchor, u"QXBOM_LABEL", lines(labels));
    builder.addXrecord(anchor, u"QXBOM_COMPONENT", lines(components));

    CPartBomDataBaseArray parts;
    ASSERT_TRUE(CGetPartInfo().GetPartsOfDatabase(&builder.database(), u"X:\\d.dwg", 1, u"", parts));
    ASSERT_EQ(parts.GetSize(), kLabels);
    const CPartBomDataBase& last = *parts[kLabels - 1];
    EXPECT_EQ(last.Label, CString(u"K") + CString(std::to_string(kLabels - 1)));
    EXPECT_EQ(last.MergedLabels.get().GetLength(), merged.GetLength() - 9);
    ASSERT_EQ(last.PartBoms.GetSize(), 1);
    EXPECT_EQ(last.PartBoms[0]->Components.GetSize(), 1);
    QxFreePartBoms(parts);
}
