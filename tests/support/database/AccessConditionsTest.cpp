#include "support/database/AccessConditions.h"
#include "support/database/FieldText.h"
#include "support/database/SqlText.h"

#include <gtest/gtest.h>

TEST(AccessConditions, LikeTakesPercentForAnyRunAndUnderscoreForOneCharacter) {
    EXPECT_TRUE(LikeMatches(u"工程名称", u"%工程%"));
    EXPECT_FALSE(LikeMatches(u"设计单位", u"%工程%"));
    EXPECT_TRUE(LikeMatches(u"abc", u"%"));
    EXPECT_FALSE(LikeMatches(u"", u"_"));
    EXPECT_TRUE(LikeMatches(u"abc", u"a_c"));
    EXPECT_FALSE(LikeMatches(u"abbc", u"a_c"));
    EXPECT_TRUE(LikeMatches(u"axbxc", u"a%b%c"));
    EXPECT_FALSE(LikeMatches(u"axbxcd", u"a%b%c"));
    EXPECT_TRUE(LikeMatches(u"aaab", u"%ab"));
    EXPECT_FALSE(LikeMatches(u"abc", u"ab"));
}

TEST(AccessConditions, TextIsComparedIgnoringCaseBeyondAscii) {
    EXPECT_TRUE(LikeMatches(u"ABCdefg", u"abc%"));
    EXPECT_TRUE(LikeMatches(u"Мир", u"мИР"));
    EXPECT_TRUE(LikeMatches(u"ÄÄKKÖSIÄ", u"ääkkösiä"));
    EXPECT_FALSE(LikeMatches(u"Мир", u"Мар"));
}

TEST(AccessConditions, ValuesAreComparedThroughTheirTextAndNullNeverMatches) {
    EXPECT_TRUE(ValueIsLike(DbValue::OfInteger(333333333), u"333%"));
    EXPECT_TRUE(ValueIsLike(DbValue::OfReal(444.555), u"444.555"));
    EXPECT_FALSE(ValueIsLike(DbValue(), u"%"));
    EXPECT_TRUE(ValueOrdersBefore(DbValue(), DbValue::OfInteger(-5)));
    EXPECT_TRUE(ValueOrdersBefore(DbValue::OfInteger(2), DbValue::OfReal(10.5)));
    EXPECT_TRUE(ValueOrdersBefore(DbValue::OfText(u"apple"), DbValue::OfText(u"Banana")));
    EXPECT_FALSE(ValueOrdersBefore(DbValue::OfText(u"b"), DbValue::OfText(u"B")));
}

TEST(FieldText, EachKindHasItsOwnTextForm) {
    CString text;
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfInteger(-42), QX_KIND_INTEGER, text));
    EXPECT_EQ(text, CString(u"-42"));
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfInteger(0x100000005LL), QX_KIND_INTEGER, text));
    EXPECT_EQ(text, CString(u"5"));  // the 32-bit integer
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfText(u"12 pieces"), QX_KIND_LONGVARCHAR, text));
    EXPECT_EQ(text, CString(u"12"));
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfReal(3.14159), QX_KIND_DOUBLE, text));
    EXPECT_EQ(text, CString(u"3.14"));
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfInteger(-1), QX_KIND_BOOLEAN, text));
    EXPECT_EQ(text, CString(u"1"));
    ASSERT_TRUE(FieldTextOfKind(DbValue::OfText(u"工程名称"), QX_KIND_CHAR, text));
    EXPECT_EQ(text, CString(u"工程名称"));
    ASSERT_TRUE(FieldTextOfKind(DbValue(), QX_KIND_CHAR, text));
    EXPECT_EQ(text, CString());
    for (int kind : std::initializer_list<int>{QX_KIND_SINGLE, QX_KIND_CURRENCY, QX_KIND_DATE, QX_KIND_UNSIGNED_TINYINT, QX_KIND_GUID, QX_KIND_VARWCHAR})
        EXPECT_FALSE(FieldTextOfKind(DbValue::OfInteger(1), kind, text)) << kind;
}
