// Splitting a list of two million short items, as a drawing's list of secondary drawings may hold: cutting
// the rest of the text off after each item copies it every time, which at this size runs for hours.
#include "support/TextHelpers.h"

#include <gtest/gtest.h>

TEST(SplitStringGrowthTest, TwoMillionItems) {
    constexpr int kItems = 2'000'000;
    std::u16string text;
    text.reserve(static_cast<size_t>(kItems) * 3);
    for (int i = 0; i < kItems; ++i) text += i % 2 ? u"b|" : u"a|";
    text += u"end";
    CStringArray parts;
    ASSERT_TRUE(SplitString(CString(std::move(text)), u"|", parts));
    ASSERT_EQ(parts.GetSize(), kItems + 1);
    EXPECT_EQ(parts[0], u"a");
    EXPECT_EQ(parts[kItems - 1], u"b");
    EXPECT_EQ(parts[kItems], u"end");
}
