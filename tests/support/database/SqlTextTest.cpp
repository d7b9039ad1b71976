#include "support/database/SqlText.h"

#include <gtest/gtest.h>

namespace {

struct Formed {
    const char* what;
    CString got;
    CString expected;
};

} // namespace

TEST(SqlText, StatementsAreFormedAsTheHostsDialectHasThem) {
    const CStringArray twoFields({u"F", u"G"});
    const Formed rows[] = {
        {"one field", SqlSelectField(u"T", u"F"), u"SELECT T.F FROM T"},
        {"all fields", SqlSelectAll(u"T"), u"SELECT * FROM T"},
        {"conditions", SqlSelectFieldWhere(u"T", u"F", CStringArray({u"C", u"D"}), CStringArray({u"V", u"W"})),
         u"SELECT T.F FROM T WHERE T.C Like \"V\" AND T.D Like \"W\""},
        {"ordered by the name table", SqlSelectOrdered(u"T", u"F"), u"SELECT T.F FROM T ORDER BY QxTableName.UseTableName"},
        {"absent values are left out",
         SqlSelectRowsWhere(u"T", CStringArray({u"C", u"D", u"E"}), CStringArray({u"V", QX_VTNULL_VALUE, u"%x"})),
         u"SELECT * FROM T WHERE T.C Like \"V\" AND T.E Like \"%x\""},
        {"no condition left", SqlSelectRowsWhere(u"T", CStringArray({u"C"}), CStringArray({QX_VTNULL_VALUE})), u"SELECT * FROM T"},
        {"only text kinds are quoted", SqlInsert(u"T", twoFields, CStringArray({u"V", u"7"}), CKindArray({129, 3})),
         u"Insert Into T (F,G) Values (\"V\",7)"},
        {"nothing is escaped", SqlInsert(u"T", CStringArray({u"F"}), CStringArray({u"say \"hi\""}), CKindArray({129})),
         u"Insert Into T (F) Values (\"say \"hi\"\")"},
        {"delete", SqlDelete(u"T", twoFields, CStringArray({u"V", u"W"}), CKindArray({129, 5})),
         u"Delete From T Where T.F=\"V\" AND T.G=W"},
        {"drop", SqlDropTable(u"T"), u"DROP TABLE T"},
        {"copy", SqlCopyTable(u"T", u"N"), u"SELECT * INTO \"[N]\" FROM \"[T]\""},
        {"drop quoted", SqlDropQuotedTable(u"T"), u"DROP TABLE \"[T]\""},
        {"update", SqlUpdate(u"T", twoFields, CStringArray({u"V", u"W"}), CKindArray({129, 3}), twoFields, CStringArray({u"V", u"W"}), CKindArray({129, 3})),
         u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W"},
        // The fourth condition is not used; an absent text is left out only for the text kind.
        {"three conditions at most",
         SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}), CStringArray({u"A", u"B", u"C", u"D"}),
                   CStringArray({QX_VTNULL_VALUE, QX_VTNULL_VALUE, u"c", u"d"}), CKindArray({129, 3, 129, 129})),
         u"Update T Set T.F=1 WHERE T.B Like _adChar_VTNULL_空 AND T.C Like \"c\""},
        {"no condition left to update", SqlUpdate(u"T", CStringArray({u"F"}), CStringArray({u"1"}), CKindArray({3}), CStringArray({u"A"}),
                                                   CStringArray({QX_VTNULL_VALUE}), CKindArray({129})),
         u"Update T Set T.F=1 WHERE "},
    };
    for (const Formed& row : rows) EXPECT_EQ(row.got, row.expected) << row.what;

    CString sql;
    CString unknown;
    const CArray<int> lengths({20, 99});
    ASSERT_TRUE(SqlCreateTable(u"T", twoFields, CKindArray({129, 3}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] Text(20), [G] Integer)"));
    ASSERT_TRUE(SqlCreateTable(u"T", twoFields, CKindArray({5, 11}), lengths, sql, unknown));
    EXPECT_EQ(sql, CString(u"CREATE TABLE T ( [F] adDouble, [G] adBoolean)"));
    EXPECT_FALSE(SqlCreateTable(u"T", twoFields, CKindArray({129, 202}), lengths, sql, unknown));
    EXPECT_EQ(unknown, CString(u"G"));
}

TEST(SqlText, HostStatementsBecomeSqlites) {
    const CString unchanged[] = {
        u"CREATE TABLE T ( [a\"b] Text(2)) -- 'x\"y'",  // single-quoted literals and bracketed names
        u"Update T Set U.F=1",                         // another table's name
        u"SELECT T.F FROM T", u"Updated T Set T.F=1",  // no update
    };
    for (const CString& sql : unchanged) EXPECT_EQ(HostSqlToSqlite(sql), sql);
    const Formed rows[] = {
        {"double quotes become single, doubled ones one",
         HostSqlToSqlite(u"SELECT T.F FROM T WHERE T.C Like \"it's\" AND T.D Like \"a\"\"b\""),
         u"SELECT T.F FROM T WHERE T.C Like 'it''s' AND T.D Like 'a\"b'"},
        // An unescaped quote inside a value splits it, and the engine refuses what is left.
        {"a lone quote splits", HostSqlToSqlite(u"Values (\"say \"hi\"\")"), u"Values ('say 'hi'')"},
        {"an odd quote is left", HostSqlToSqlite(u"Values (\"a\"b\")"), u"Values ('a'b\")"},
        {"assigned columns lose the table", HostSqlToSqlite(u"Update T Set T.F=\"V\", T.G=W WHERE T.F Like \"V\" AND T.G Like W"),
         u"Update T Set F='V', G=W WHERE T.F Like 'V' AND T.G Like W"},
        {"only the heads of assignments",
         HostSqlToSqlite(u"update 项目 set 项目.A=\"项目.B, 项目.C=1 where\",  项目.D=(1,项目.E) WHERE 项目.A Like \"x\""),
         u"update 项目 set A='项目.B, 项目.C=1 where',  D=(1,项目.E) WHERE 项目.A Like 'x'"},
        {"the table in any case", HostSqlToSqlite(u"Update T Set t.F=1"), u"Update T Set F=1"},
    };
    for (const Formed& row : rows) EXPECT_EQ(row.got, row.expected) << row.what;
}
