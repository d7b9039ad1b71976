// Drawings of a size that once cost quadratic or exponential time: block definitions nested 32 deep, a
// label cell of very many labels, secondary lists of very many moved circuits.
#include "common/TempFolder.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/dxf/DxfReader.h"
#include "drawing/model/AcDb.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/parts/GetPartInfo.h"
#include "drawing/primary/SecondaryDrawingList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>

namespace {

void tags(std::string& out, std::initializer_list<std::pair<int, std::string>> pairs) {
    for (const auto& [code, value] : pairs) out += std::to_string(code) + "\n" + value + "\n";
}

// Block L0 is a unit line; block Lk holds Lk-1 twice, side by side, so it is 2^k wide and 1 high.
// Model space holds one reference to the top block.
std::string nestedBlocksDxf(int levels) {
    std::string out;
    tags(out, {{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {2, "L0"}, {0, "LINE"}, {10, "0"}, {20, "0"}, {11, "1"},
               {21, "1"}, {0, "ENDBLK"}});
    for (int level = 1; level < levels; ++level) {
        tags(out, {{0, "BLOCK"}, {2, "L" + std::to_string(level)}});
        for (const double x : {0.0, std::ldexp(1.0, level - 1)})
            tags(out, {{0, "INSERT"}, {2, "L" + std::to_string(level - 1)}, {10, std::to_string(x)}, {20, "0"}});
        tags(out, {{0, "ENDBLK"}});
    }
    tags(out, {{0, "ENDSEC"}, {0, "SECTION"}, {2, "ENTITIES"}, {0, "INSERT"}, {2, "L" + std::to_string(levels - 1)},
               {10, "0"}, {20, "0"}, {0, "ENDSEC"}, {0, "EOF"}});
    return out;
}

ResItems lines(const std::vector<CString>& texts) {
    ResItems items;
    for (const CString& text : texts) items.push_back(ResItem::text(1, text));
    return items;
}

} // namespace

// Each block definition inserts the one below it twice, so the paths from the top reference to the bottom
// one double with every level.
// 32 levels mean 2^31 unit lines reached by as many paths: measured path by path this takes about half
// an hour; measured once per definition it is immediate.
TEST(BlockExtentsGrowthTest, ThirtyTwoLevelsOfDoubledNestingAreMeasuredOncePerDefinition) {
    constexpr int kLevels = 32;
    AcDbDatabase db(false, true);
    ASSERT_EQ(ReadDxfText(nestedBlocksDxf(kLevels), db), DxfLoadStatus::Ok);
    AcDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(acdbOpenObject(model, db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(model->entityIds().size(), 1u);
    const auto* top = AcDbBlockReference::cast(model->entityIds().front().objectUnchecked());
    ASSERT_NE(top, nullptr);

    AcDbExtents extents;
    ASSERT_EQ(top->getGeomExtents(extents), Acad::eOk);
    EXPECT_EQ(extents.minPoint(), (AcGePoint3d{0, 0, 0}));
    EXPECT_EQ(extents.maxPoint(), (AcGePoint3d{std::ldexp(1.0, kLevels - 1), 1, 0}));
}

// Each group of a label record once held a copy of every value (a long merged-labels line, inherited by
// every group, ran out of memory), and every label and every component was looked for in all the records
// made before it.
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

// Looking for each moved piece beside the primary drawing once listed the whole crowded folder again,
// piece by piece.
TEST(SecondaryListGrowthTest, ManyMovedPiecesInAFolderOfManyEntries) {
    constexpr int kDrawings = 20'000;
    TempFolder folder;
    const std::filesystem::path below = std::filesystem::path(folder.native()) / "Secondary";
    std::filesystem::create_directories(below);
    for (int i = 0; i < kDrawings; ++i) {
        std::ofstream(std::filesystem::path(folder.native()) / ("other" + std::to_string(i) + ".txt"));
        std::ofstream(below / ("s" + std::to_string(i) + ".dwg"));
    }
    SecondaryDrawingFinder finder(folder.logic() + u"primary.dwg");
    for (int i = 0; i < kDrawings; ++i) {
        const CString name = CString(u"S") + CString(std::to_string(i)) + u".DWG";
        ASSERT_FALSE(finder.Exists(u"D:\\old\\" + name));
        ASSERT_EQ(finder.Resolve(u"D:\\old\\" + name),
                  folder.logic() + u"Secondary\\s" + CString(std::to_string(i)) + u".dwg");
    }
    EXPECT_TRUE(finder.Exists(folder.logic() + u"OTHER7.TXT"));
}
