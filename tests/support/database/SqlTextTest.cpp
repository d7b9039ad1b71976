#include "support/database/SqlText.h"

#include <gtest/gtest.h>


TEST(SqlText, ReadsAreFormedAsTheHostsDialectHasThem) {
    EXPECT_EQ(SqlSelectField(u"T", u"F"), CString(u"SELECT T.F FROM T"));
    EXPECT_EQ(SqlSelectAll(u"T"), CString(u"SELECT * FROM T"));
    EXPECT_EQ(SqlSelectFieldWhere(u"T", u"F", CStringArray({u"C", u"D"}), CStringArray({u"V", u"W"})),
              CString(u"SELECT T.F FROM T WHERE T.C Like \"V\" AND T.D Like \"W\""));
    EXPECT_EQ(SqlSelectOrdered(u"T", u"F"), CString(u"SELECT T.F FROM T ORDER BY QxTableName.UseTableName"));
    EXPECT_EQ(SqlSelectRowsWhere(u"T", CStringArray({u"C", u"D", u"E"}), CStringArray({u"V", QX_VTNULL_VALUE, u"%x"})),
              CString(u"SELECT * FROM T WHERE T.C Like \"V\" AND T.E Like \"%x\""));
    EXPECT_EQ(SqlSelectRowsWhere(u"T", CStringArray({u"C"}), CStringArray({QX_VTNULL_VALUE})), CString(u"SELECT * FROM T"));
}

TEST(SqlText, ChangesQuoteOnlyTextKindsAndEscapeNothing) {
    EXPECT_EQ(SqlInsert(u"T", CStringArray({u"F", u"G"}), CStringArray({u"V", u"7"}), CKindArray({129, 3})),
              CString(u"Insert Into T (F,G) Values (\"V\",7)"));
    EXPECT_EQ(SqlInsert(u"T", CStringArray({u"F"}), CStringArray({u"say \"hi\""}), CKindArray({129})),
              CString(u"Insert Into T (F) Values (\"say \"hi\"\")"));
    EXPECT_EQ(SqlDelete(u"T", CStringArray({u"F", u"G"}), CStringArray({u"V", u"W"}), CKindArray({129, 5})),
              CString(u"Delete From T Where T.F=\"V\" AND T.G=W"));
    EXPECT_EQ(SqlDropTable(u"T"), CString(u"DROP TABLE T"));
    EXPECT_EQ(SqlCopyTable(u"T", u"N"), CString(u"SELECT * INTO \"[N]\" FROM \"[T]\""));
    EXPECT_EQ(SqlDropQuotedTable(u"T"), CString(u"DROP TABLE \"[T]\""));
}

TEST(SqlText, UpdateTakesThreeConditionsAndLeavesOutAbsentTexts) {
    EXPECT_EQ(SqlUpdate(u"T", CStringArray({u"F", u"G"}), CStringArray({u"V", u"W"}), CKindArray({129, 3}), CStringArray({u"F", u"G"}),
                        CStringArray({u"V", u"W"}), CKindArray({129, 3})),
              CString(u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W"));
    // The fourth condition is not used; an absent text is left out only for the text kind.
    EXPECT_EQ(SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}), CStringArray({u"A", u"B", u"C", u"D"}),
                        CStringArray({QX_VTNULL_VALUE, QX_VTNULL_VALUE, u"c", u"d"}), CKindArray({129, 3, 129, 129})),
              CString(u"Update T Set T.F=1 WHERE T.B Like _adChar_VTNULL_空 AND T.C Like \"c\""));
    EXPECT_EQ(SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}), CStringArray({u"A"}), CStringArray({QX_VTNULL_VALUE}),
                        CKindArray({129})),
              CString(u"Update T Set T.F=1 WHERE "));
}

TEST(SqlText, CreateTableWritesTypeWordsAndRefusesUnknownKinds) {
    CString sql;
    CString unknown;
    const CArray<int> lengths({20, 99});
    ASSERT_TRUE(SqlCreateTable(u"T", CStringArray({u"F", u"G"}), CKindArray({129, 3}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] Text(20), [G] Integer)"));
    ASSERT_TRUE(SqlCreateTable(u"T", CStringArray({u"F", u"G"}), CKindArray({5, 11}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] adDouble, [G] adBoolean)"));
    EXPECT_FALSE(SqlCreateTable(u"T", CStringArray({u"F", u"G"}), CKindArray({129, 202}), lengths, sql, unknown));
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

TEST(SqlText, SqliteTakesUpdatesWithoutTheTableBeforeAssignedColumns) {
    EXPECT_EQ(HostSqlToSqlite(u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W"),
              CString(u"Update T Set F='V', G=W WHERE T.F Like 'V' AND T.G Like W"));
    // Only the heads of assignments lose the table: names inside literals and values stay as written.
    EXPECT_EQ(HostSqlToSqlite(u"update 项目 set 项目.A=\"项目.B, 项目.C=1 where\",  项目.D=(1,项目.E) WHERE 项目.A Like \"x\""),
              CString(u"update 项目 set A='项目.B, 项目.C=1 where',  D=(1,项目.E) WHERE 项目.A Like 'x'"));
    EXPECT_EQ(HostSqlToSqlite(u"Update T Set t.F=1"), CString(u"Update T Set F=1"));
    // Other statements, and other tables' names, are left alone.
    EXPECT_EQ(HostSqlToSqlite(u"Update T Set U.F=1"), CString(u"Update T Set U.F=1"));
    EXPECT_EQ(HostSqlToSqlite(u"SELECT T.F FROM T"), CString(u"SELECT T.F FROM T"));
    EXPECT_EQ(HostSqlToSqlite(u"Updated T Set T.F=1"), CString(u"Updated T Set T.F=1"));
}
