// Extents of deeply nested block definitions: each definition inserts the one below it twice, so the
// paths from the top reference to the bottom one double with every level.
#include "drawing/dxf/DxfReader.h"
#include "drawing/model/AcDb.h"

#include <gtest/gtest.h>

#include <cmath>
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

} // namespace

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
