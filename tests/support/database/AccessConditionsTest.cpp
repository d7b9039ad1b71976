#include "support/database/AccessConditions.h"
#include "support/database/FieldText.h"
#include "support/database/SqlText.h"

#include <gtest/gtest.h>

#include <vector>

TEST(AccessConditions, LikeMatchesRunsAndSingleCharactersIgnoringCaseBeyondAscii) {
    const struct { const char16_t* text; const char16_t* pattern; bool matches; } rows[] = {
        {u"工程名称", u"%工程%", true},  {u"设计单位", u"%工程%", false}, {u"abc", u"%", true},
        {u"", u"_", false},              {u"abc", u"a_c", true},          {u"abbc", u"a_c", false},
        {u"axbxc", u"a%b%c", true},      {u"axbxcd", u"a%b%c", false},    {u"aaab", u"%ab", true},
        {u"abc", u"ab", false},          {u"ABCdefg", u"abc%", true},     {u"Мир", u"мИР", true},
        {u"ÄÄKKÖSIÄ", u"ääkkösiä", true}, {u"Мир", u"Мар", false},
    };
    for (const auto& row : rows) EXPECT_EQ(LikeMatches(row.text, row.pattern), row.matches) << CString(row.text) << " " << CString(row.pattern);
}

TEST(AccessConditions, ValuesAreComparedThroughTheirTextAndNullNeverMatches) {
    const std::vector<bool> answers = {
        ValueIsLike(DbValue::OfInteger(333333333), u"333%"), ValueIsLike(DbValue::OfReal(444.555), u"444.555"),
        ValueIsLike(DbValue(), u"%"), ValueOrdersBefore(DbValue(), DbValue::OfInteger(-5)),
        ValueOrdersBefore(DbValue::OfInteger(2), DbValue::OfReal(10.5)),
        ValueOrdersBefore(DbValue::OfText(u"apple"), DbValue::OfText(u"Banana")),
        ValueOrdersBefore(DbValue::OfText(u"b"), DbValue::OfText(u"B"))};
    EXPECT_EQ(answers, (std::vector<bool>{true, true, false, true, true, true, false}));
}

TEST(FieldText, EachKindHasItsOwnTextForm) {
    const struct { const char* what; DbValue value; int kind; CString text; } rows[] = {
        {"an integer", DbValue::OfInteger(-42), QX_KIND_INTEGER, u"-42"},
        {"the 32-bit integer", DbValue::OfInteger(0x100000005LL), QX_KIND_INTEGER, u"5"},
        {"a long text's leading number", DbValue::OfText(u"12 pieces"), QX_KIND_LONGVARCHAR, u"12"},
        {"two decimals", DbValue::OfReal(3.14159), QX_KIND_DOUBLE, u"3.14"},
        {"true as 1", DbValue::OfInteger(-1), QX_KIND_BOOLEAN, u"1"},
        {"a text", DbValue::OfText(u"工程名称"), QX_KIND_CHAR, u"工程名称"},
        {"null as empty", DbValue(), QX_KIND_CHAR, u""},
    };
    for (const auto& row : rows) {
        CString text = u"?";
        EXPECT_TRUE(FieldTextOfKind(row.value, row.kind, text)) << row.what;
        EXPECT_EQ(text, row.text) << row.what;
    }
    CString text;
    for (int kind : std::initializer_list<int>{QX_KIND_SINGLE, QX_KIND_CURRENCY, QX_KIND_DATE, QX_KIND_UNSIGNED_TINYINT, QX_KIND_GUID, QX_KIND_VARWCHAR})
        EXPECT_FALSE(FieldTextOfKind(DbValue::OfInteger(1), kind, text)) << kind;
}
