#include "support/database/SqlText.h"

#include <gtest/gtest.h>

TEST(SqlText, StatementsAreFormedAsTheHostsDialectHasThemAndChangesEscapeNothing) {
    const CStringArray two({u"C", u"D"});
    const struct {
        const char* what;
        CString got;
        const char16_t* expected;
    } rows[] = {
        {"a field", SqlSelectField(u"T", u"F"), u"SELECT T.F FROM T"},
        {"all", SqlSelectAll(u"T"), u"SELECT * FROM T"},
        {"a field where", SqlSelectFieldWhere(u"T", u"F", two, CStringArray({u"V", u"W"})),
         u"SELECT T.F FROM T WHERE T.C Like \"V\" AND T.D Like \"W\""},
        {"ordered", SqlSelectOrdered(u"T", u"F"), u"SELECT T.F FROM T ORDER BY QxTableName.UseTableName"},
        {"rows where, an absent value left out",
         SqlSelectRowsWhere(u"T", CStringArray({u"C", u"D", u"E"}), CStringArray({u"V", QX_VTNULL_VALUE, u"%x"})),
         u"SELECT * FROM T WHERE T.C Like \"V\" AND T.E Like \"%x\""},
        {"rows where nothing is left", SqlSelectRowsWhere(u"T", CStringArray({u"C"}), CStringArray({QX_VTNULL_VALUE})),
         u"SELECT * FROM T"},
        {"an insert quotes text kinds only", SqlInsert(u"T", two, CStringArray({u"V", u"7"}), CKindArray({129, 3})),
         u"Insert Into T (C,D) Values (\"V\",7)"},
        {"an insert escapes nothing",
         SqlInsert(u"T", CStringArray({u"F"}), CStringArray({u"say \"hi\""}), CKindArray({129})),
         u"Insert Into T (F) Values (\"say \"hi\"\")"},
        {"a delete", SqlDelete(u"T", two, CStringArray({u"V", u"W"}), CKindArray({129, 5})),
         u"Delete From T Where T.C=\"V\" AND T.D=W"},
        {"a drop", SqlDropTable(u"T"), u"DROP TABLE T"},
        {"a copy", SqlCopyTable(u"T", u"N"), u"SELECT * INTO \"[N]\" FROM \"[T]\""},
        {"a drop of a quoted table", SqlDropQuotedTable(u"T"), u"DROP TABLE \"[T]\""},
        {"an update",
         SqlUpdate(u"T", two, CStringArray({u"V", u"W"}), CKindArray({129, 3}), two, CStringArray({u"V", u"W"}),
                   CKindArray({129, 3})),
         u"Update T Set T.C=\"V\", T.D=W WHERE T.C Like \"V\" AND T.D Like W"},
        {"an update uses three conditions and leaves out an absent value of the text kind only",
         SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}),
                   CStringArray({u"A", u"B", u"C", u"D"}), CStringArray({QX_VTNULL_VALUE, QX_VTNULL_VALUE, u"c", u"d"}),
                   CKindArray({129, 3, 129, 129})),
         u"Update T Set T.F=1 WHERE T.B Like _adChar_VTNULL_空 AND T.C Like \"c\""},
        {"an update whose conditions are all left out",
         SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}), CStringArray({u"A"}),
                   CStringArray({QX_VTNULL_VALUE}), CKindArray({129})),
         u"Update T Set T.F=1 WHERE "},
    };
    for (const auto& row : rows) EXPECT_EQ(row.got, CString(row.expected)) << row.what;
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

TEST(SqlText, SqliteTakesTheHostsStatementsWithItsOwnLiteralsAndAssignments) {
    const struct {
        const char* what;
        const char16_t* host;
        const char16_t* sqlite;
    } rows[] = {
        {"double-quoted text becomes single-quoted literals",
         u"SELECT T.F FROM T WHERE T.C Like \"it's\" AND T.D Like \"a\"\"b\"",
         u"SELECT T.F FROM T WHERE T.C Like 'it''s' AND T.D Like 'a\"b'"},
        {"single-quoted literals and bracketed names pass untouched", u"CREATE TABLE T ( [a\"b] Text(2)) -- 'x\"y'",
         u"CREATE TABLE T ( [a\"b] Text(2)) -- 'x\"y'"},
        // The engine refuses what is left.
        {"an unescaped quote inside a value splits it", u"Values (\"say \"hi\"\")", u"Values ('say 'hi'')"},
        {"an unescaped quote inside a value splits it, a lone one", u"Values (\"a\"b\")", u"Values ('a'b\")"},
        {"updates lose the table before assigned columns",
         u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W",
         u"Update T Set F='V', G=W WHERE T.F Like 'V' AND T.G Like W"},
        {"only the heads of assignments lose it: names inside literals and values stay as written",
         u"update 项目 set 项目.A=\"项目.B, 项目.C=1 where\",  项目.D=(1,项目.E) WHERE 项目.A Like \"x\"",
         u"update 项目 set A='项目.B, 项目.C=1 where',  D=(1,项目.E) WHERE 项目.A Like 'x'"},
        {"the table's name ignores case", u"Update T Set t.F=1", u"Update T Set F=1"},
        {"another table's name is left alone", u"Update T Set U.F=1", u"Update T Set U.F=1"},
        {"so are other statements", u"SELECT T.F FROM T", u"SELECT T.F FROM T"},
        {"and words that only begin like Update", u"Updated T Set T.F=1", u"Updated T Set T.F=1"},
    };
    for (const auto& row : rows) EXPECT_EQ(HostSqlToSqlite(row.host), CString(row.sqlite)) << row.what;
}
