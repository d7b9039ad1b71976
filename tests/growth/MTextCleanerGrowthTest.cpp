// Cleaning a very long MText: deleting each code from the text in turn moves the rest of the text every
// time, which at this size runs for a quarter of an hour; the cleaner must stay linear.
#include "drawing/bom/MTextCleaner.h"

#include <gtest/gtest.h>

TEST(MTextCleanerGrowthTest, MillionsOfFormatCodes) {
    constexpr int kCodes = 4'000'000;
    std::u16string text;
    text.reserve(static_cast<size_t>(kCodes) * 3 + 8);
    for (int i = 0; i < kCodes; ++i) text += u"\\Lx";
    text += u"\\A1;end";
    const CString cleaned = QxCleanMText(CString(std::move(text)));
    ASSERT_EQ(cleaned.GetLength(), kCodes + 3);
    EXPECT_EQ(cleaned.Left(3), u"xxx");
    EXPECT_EQ(cleaned.Right(4), u"xend");
}
