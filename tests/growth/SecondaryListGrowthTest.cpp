// Moved secondary lists of very many circuits in a crowded folder: looking for each piece beside the
// primary drawing once listed the whole folder again, piece by piece.
#include "common/TempFolder.h"
#include "drawing/primary/SecondaryDrawingList.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

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
        ASSERT_EQ(finder.Resolve(u"D:\\old\\" + name), folder.logic() + u"Secondary\\s" + CString(std::to_string(i)) + u".dwg");
    }
    EXPECT_TRUE(finder.Exists(folder.logic() + u"OTHER7.TXT"));
}
