#include "support/database/SqlText.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

CStringArray texts(std::initializer_list<const char16_t*> items) {
    CStringArray list;
    for (const char16_t* item : items) list.Add(item);
    return list;
}

CKindArray kinds(std::initializer_list<int> items) {
    CKindArray list;
    for (int item : items) list.Add(item);
    return list;
}

} // namespace

TEST(SqlText, ReadsAreFormedAsTheHostsDialectHasThem) {
    EXPECT_EQ(SqlSelectField(u"T", u"F"), CString(u"SELECT T.F FROM T"));
    EXPECT_EQ(SqlSelectAll(u"T"), CString(u"SELECT * FROM T"));
    EXPECT_EQ(SqlSelectFieldWhere(u"T", u"F", texts({u"C", u"D"}), texts({u"V", u"W"})),
              CString(u"SELECT T.F FROM T WHERE T.C Like \"V\" AND T.D Like \"W\""));
    EXPECT_EQ(SqlSelectOrdered(u"T", u"F"), CString(u"SELECT T.F FROM T ORDER BY QxTableName.UseTableName"));
    EXPECT_EQ(SqlSelectRowsWhere(u"T", texts({u"C", u"D", u"E"}), texts({u"V", QX_VTNULL_VALUE, u"%x"})),
              CString(u"SELECT * FROM T WHERE T.C Like \"V\" AND T.E Like \"%x\""));
    EXPECT_EQ(SqlSelectRowsWhere(u"T", texts({u"C"}), texts({QX_VTNULL_VALUE})), CString(u"SELECT * FROM T"));
}

TEST(SqlText, ChangesQuoteOnlyTextKindsAndEscapeNothing) {
    EXPECT_EQ(SqlInsert(u"T", texts({u"F", u"G"}), texts({u"V", u"7"}), kinds({129, 3})),
              CString(u"Insert Into T (F,G) Values (\"V\",7)"));
    EXPECT_EQ(SqlInsert(u"T", texts({u"F"}), texts({u"say \"hi\""}), kinds({129})),
              CString(u"Insert Into T (F) Values (\"say \"hi\"\")"));
    EXPECT_EQ(SqlDelete(u"T", texts({u"F", u"G"}), texts({u"V", u"W"}), kinds({129, 5})),
              CString(u"Delete From T Where T.F=\"V\" AND T.G=W"));
    EXPECT_EQ(SqlDropTable(u"T"), CString(u"DROP TABLE T"));
    EXPECT_EQ(SqlCopyTable(u"T", u"N"), CString(u"SELECT * INTO \"[N]\" FROM \"[T]\""));
    EXPECT_EQ(SqlDropQuotedTable(u"T"), CString(u"DROP TABLE \"[T]\""));
}

TEST(SqlText, UpdateTakesThreeConditionsAndLeavesOutAbsentTexts) {
    EXPECT_EQ(SqlUpdate(u"T", texts({u"F", u"G"}), texts({u"V", u"W"}), kinds({129, 3}), texts({u"F", u"G"}),
                        texts({u"V", u"W"}), kinds({129, 3})),
              CString(u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W"));
    // The fourth condition is not used; an absent text is left out only for the text kind.
    EXPECT_EQ(SqlUpdate(u"T", texts({u"F"}), texts({u"1"}), kinds({3}), texts({u"A", u"B", u"C", u"D"}),
                        texts({QX_VTNULL_VALUE, QX_VTNULL_VALUE, u"c", u"d"}), kinds({129, 3, 129, 129})),
              CString(u"Update T Set T.F=1 WHERE T.B Like _adChar_VTNULL_空 AND T.C Like \"c\""));
    EXPECT_EQ(SqlUpdate(u"T", texts({u"F"}), texts({u"1"}), kinds({3}), texts({u"A"}), texts({QX_VTNULL_VALUE}),
                        kinds({129})),
              CString(u"Update T Set T.F=1 WHERE "));
}

TEST(SqlText, CreateTableWritesTypeWordsAndRefusesUnknownKinds) {
    CString sql;
    CString unknown;
    CArray<int> lengths;
    lengths.Add(20);
    lengths.Add(99);
    ASSERT_TRUE(SqlCreateTable(u"T", texts({u"F", u"G"}), kinds({129, 3}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] Text(20), [G] Integer)"));
    ASSERT_TRUE(SqlCreateTable(u"T", texts({u"F", u"G"}), kinds({5, 11}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] adDouble, [G] adBoolean)"));
    EXPECT_FALSE(SqlCreateTable(u"T", texts({u"F", u"G"}), kinds({129, 202}), lengths, sql, unknown));
    EXPECT_EQ(unknown, CString(u"G"));
}

TEST(SqlText, DoubleQuotedTextBecomesSqliteTextLiterals) {
    EXPECT_EQ(HostSqlToSqlite(u"SELECT T.F FROM T WHERE T.C Like \"it's\" AND T.D Like \"a\"\"b\""),
              CString(u"SELECT T.F FROM T WHERE T.C Like 'it''s' AND T.D Like 'a\"b'"));
    // Single-quoted literals and bracketed names pass through untouched.
    EXPECT_EQ(HostSqlToSqlite(u"CREATE TABLE T ( [a\"b] Text(2)) -- 'x\"y'"),
              CString(u"CREATE TABLE T ( [a\"b] Text(2)) -- 'x\"y'"));
    // An unescaped quote inside a value splits it, and the engine refuses what is left.
    EXPECT_EQ(HostSqlToSqlite(u"Values (\"say \"hi\"\")"), CString(u"Values ('say 'hi'')"));
    EXPECT_EQ(HostSqlToSqlite(u"Values (\"a\"b\")"), CString(u"Values ('a'b\")"));
}
