#include "common/CapturedOutput.h"
#include "common/TempFolder.h"
#include "support/database/OperateMdb.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

namespace {

std::vector<CString> asVector(const CStringArray& list) { return {list.begin(), list.end()}; }

// A SQLite file made by SQLite's own shell, so the engine is tested on what another writer made.
class SqliteFiles : public ::testing::Test {
protected:
    void SetUp() override {
        folder.writeFile("make.sql", R"(
            CREATE TABLE "Qx项目设备描述信息" (WORD TEXT(50), N INTEGER, X REAL, B BOOLEAN);
            INSERT INTO "Qx项目设备描述信息" VALUES ('工程名称', 1, 2.5, 1), ('设计单位', 2, NULL, 0),
                ('abc', 3, 1.005, 0), ('ABC', 4, 3, 0), (NULL, 5, 0, 0), ('WORD', 6, 0, 0);
            CREATE TABLE QxTableName (UseTableName TEXT, Pos INTEGER);
            INSERT INTO QxTableName VALUES ('b', 2), ('c', 3), ('a', 1);
            CREATE VIEW Words AS SELECT WORD FROM "Qx项目设备描述信息";
        )");
        const std::string command =
            "sqlite3 '" + folder.native() + "/words.db' < '" + folder.native() + "/make.sql'";
        ASSERT_EQ(std::system(command.c_str()), 0) << "the sqlite3 shell is needed to make the test file";
        path = folder.logic() + u"words.db";
    }

    TempFolder folder;
    CString path;
    const CString table = u"Qx项目设备描述信息";
};

} // namespace

TEST_F(SqliteFiles, TablesAndColumnsReadAsOnAccess) {
    COperateMdb db(path);
    ASSERT_TRUE(db.IsOpen());
    CStringArray names;
    db.GetTableNames(names);
    EXPECT_EQ(asVector(names), (std::vector<CString>{u"QxTableName", table}));  // the view is left out
    EXPECT_FALSE(db.TableExists(u"Words"));

    CStringArray values;
    ASSERT_TRUE(db.GetFieldValues(table, u"WORD", values, QX_KIND_CHAR, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"工程名称", u"设计单位", u"abc", u"ABC", u"", u"WORD"}));
    ASSERT_TRUE(db.GetFieldValues(table, u"WORD", values, QX_KIND_CHAR, true));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"工程名称", u"设计单位", u"abc", u"", u"WORD"}));
    ASSERT_TRUE(db.GetFieldValues(table, u"X", values, QX_KIND_DOUBLE, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"2.50", u"0.00", u"1.00", u"3.00", u"0.00", u"0.00"}));
    ASSERT_TRUE(db.GetFieldValues(table, u"B", values, QX_KIND_BOOLEAN, true));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"1", u"0"}));

    int kind = 0;
    ASSERT_TRUE(db.GetFieldKind(table, u"N", kind));
    EXPECT_EQ(kind, QX_KIND_INTEGER);
    ASSERT_TRUE(db.GetFieldKind(table, u"WORD", kind));
    EXPECT_EQ(kind, QX_KIND_VARWCHAR);
    CStringArray fields;
    ASSERT_TRUE(db.GetFieldNames(table, fields));
    EXPECT_EQ(asVector(fields), (std::vector<CString>{u"WORD", u"N", u"X", u"B"}));
    EXPECT_EQ(db.GetRecordCount(table), 6);
    EXPECT_FALSE(db.GetFieldValues(table, u"Missing", values, QX_KIND_CHAR, false));
}

TEST_F(SqliteFiles, ConditionsAndOrderingFollowTheFormedStatements) {
    CapturedOutput output;
    COperateMdb db(path);
    CStringArray values;
    ASSERT_TRUE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"%工程%"}), values, QX_KIND_INTEGER, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"1"}));
    // A value that happens to be a column's name is still a text.
    ASSERT_TRUE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"WORD"}), values, QX_KIND_INTEGER, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"6"}));
    ASSERT_TRUE(db.GetFieldValuesWhere(table, u"N", CStringArray({}), CStringArray({}), values, QX_KIND_INTEGER, false));
    EXPECT_TRUE(values.IsEmpty());
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_FALSE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({}), values, QX_KIND_INTEGER, false));
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, CString(u"程序员应用此函数,传入的参数有错误,请检查!"));
    EXPECT_EQ(output.boxes[0].caption, CString(u"Corvane"));

    ASSERT_TRUE(db.GetOrderedFieldValues(u"QxTableName", u"Pos", values, QX_KIND_INTEGER, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"1", u"2", u"3"}));
    EXPECT_FALSE(db.GetOrderedFieldValues(table, u"N", values, QX_KIND_INTEGER, false));

    CArray<CStringArray> rows;
    ASSERT_TRUE(db.SelectRows(table, CStringArray({u"WORD", u"N"}), CStringArray({u"a_c", QX_VTNULL_VALUE}), rows));
    ASSERT_EQ(rows.GetSize(), 2);
    EXPECT_EQ(asVector(rows[0]), (std::vector<CString>{u"abc", u"3", u"1.005", u"0"}));
    EXPECT_EQ(rows[1][0], CString(u"ABC"));
}

TEST_F(SqliteFiles, StatementsChangeTheFileWhereSqliteTakesTheirForm) {
    CapturedOutput output;
    COperateMdb db(path);
    ASSERT_TRUE(db.InsertRecord(table, CStringArray({u"WORD", u"N"}), CStringArray({u"制造厂家", u"7"}), CKindArray({129, 3})));
    EXPECT_EQ(db.GetRecordCount(table), 7);
    // Values are not escaped: a double quote breaks the statement and nothing is written.
    EXPECT_FALSE(db.InsertRecord(table, CStringArray({u"WORD"}), CStringArray({u"12\" panel"}), CKindArray({129})));
    EXPECT_FALSE(db.InsertRecord(table, CStringArray({u"WORD"}), CStringArray({u"x"}), CKindArray({129, 3})));
    EXPECT_EQ(db.GetRecordCount(table), 7);
    // Update does what it says: Like ignores case, so both spellings of abc change.
    ASSERT_TRUE(db.UpdateRecords(table, CStringArray({u"N", u"WORD"}), CStringArray({u"9", u"a, b"}), CKindArray({3, 129}),
                                 CStringArray({u"WORD"}), CStringArray({u"abc"}), CKindArray({129})));
    CStringArray changed;
    ASSERT_TRUE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"a, b"}), changed, QX_KIND_INTEGER, false));
    EXPECT_EQ(asVector(changed), (std::vector<CString>{u"9", u"9"}));
    ASSERT_TRUE(db.DeleteRecords(table, CStringArray({u"WORD", u"N"}), CStringArray({u"制造厂家", u"7"}), CKindArray({129, 3})));
    EXPECT_EQ(db.GetRecordCount(table), 6);

    const CArray<int> lengths({20, 0});
    ASSERT_TRUE(db.CreateTable(u"new table-1", CStringArray({u"Name", u"Count"}), CKindArray({129, 3}), lengths));
    EXPECT_TRUE(db.TableExists(u"new_table_1"));
    int kind = 0;
    ASSERT_TRUE(db.GetFieldKind(u"new_table_1", u"Count", kind));
    EXPECT_EQ(kind, QX_KIND_INTEGER);
    EXPECT_TRUE(output.boxes.empty());

    EXPECT_FALSE(db.CreateTable(u"NEW_TABLE_1", CStringArray({u"Name"}), CKindArray({129}), lengths));
    EXPECT_FALSE(db.CreateTable(u"other", CStringArray({u"Name", u"When"}), CKindArray({129, 99}), lengths));
    ASSERT_EQ(output.boxes.size(), 2u);
    EXPECT_EQ(output.boxes[0].text, CString(u"该表名数据库中已经有了,请更换表名"));
    EXPECT_EQ(output.boxes[0].style, unsigned(MB_OK | MB_ICONWARNING));
    EXPECT_EQ(output.boxes[1].text, CString(u"Enum Error:When unknow. Create Table false."));
    EXPECT_FALSE(db.TableExists(u"other"));

    // SQLite has no SELECT INTO: the copy fails and the table stays.
    EXPECT_FALSE(db.RenameTable(u"new_table_1", u"renamed"));
    EXPECT_TRUE(db.TableExists(u"new_table_1"));
    EXPECT_FALSE(db.RenameTable(u"new_table_1", u"qxtablename"));
    ASSERT_EQ(output.boxes.size(), 3u);
    EXPECT_EQ(output.boxes[2].text, CString(u"数据库表名已经存在! "));

    ASSERT_TRUE(db.DropTable(u"new_table_1"));
    EXPECT_FALSE(db.TableExists(u"new_table_1"));
    EXPECT_TRUE(db.ExecuteSql(u"DELETE FROM QxTableName WHERE UseTableName = \"b\""));
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), 2);

    db.CloseDatabase();
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), -1);
    EXPECT_EQ(COperateMdb(path).GetRecordCount(u"QxTableName"), 2);
}

TEST_F(SqliteFiles, OneCallRunsOneStatementWhateverTheValuesHold) {
    COperateMdb db(path);
    const int words = db.GetRecordCount(table);
    // A value that closes its literal and goes on with a statement of its own.
    EXPECT_FALSE(db.InsertRecord(table, CStringArray({u"WORD"}), CStringArray({u"x\"); DROP TABLE QxTableName; --"}), CKindArray({129})));
    EXPECT_FALSE(db.DeleteRecords(table, CStringArray({u"WORD"}), CStringArray({u"x\"; DROP TABLE QxTableName; --"}), CKindArray({129})));
    EXPECT_FALSE(db.UpdateRecords(table, CStringArray({u"N"}), CStringArray({u"1; DELETE FROM QxTableName"}), CKindArray({3}),
                                  CStringArray({u"WORD"}), CStringArray({u"%"}), CKindArray({129})));
    CStringArray values;
    EXPECT_FALSE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"x\"; DELETE FROM QxTableName; --"}),
                                        values, QX_KIND_INTEGER, false));
    EXPECT_FALSE(db.ExecuteSql(u"DELETE FROM QxTableName; DROP TABLE QxTableName"));
    EXPECT_TRUE(db.TableExists(u"QxTableName"));
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), 3);
    EXPECT_EQ(db.GetRecordCount(table), words);
    // A lone quote in a condition breaks the statement; a doubled one stands for one quote.
    EXPECT_FALSE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"only\""}), values, QX_KIND_INTEGER, false));
    ASSERT_TRUE(db.InsertRecord(table, CStringArray({u"WORD", u"N"}), CStringArray({u"12\"\" panel", u"8"}), CKindArray({129, 3})));
    ASSERT_TRUE(db.GetFieldValuesWhere(table, u"N", CStringArray({u"WORD"}), CStringArray({u"12\"\"%"}), values, QX_KIND_INTEGER, false));
    EXPECT_EQ(asVector(values), (std::vector<CString>{u"8"}));
    ASSERT_TRUE(db.DeleteRecords(table, CStringArray({u"N"}), CStringArray({u"8"}), CKindArray({3})));
    // White space, comments and a closing semicolon are no second statement.
    EXPECT_TRUE(db.ExecuteSql(u"DELETE FROM QxTableName WHERE Pos = 3; -- the last one\n  ;"));
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), 2);
}

TEST_F(SqliteFiles, TheEngineIsChosenFromTheFirstBytesAlone) {
    // A terabyte, nearly all of it a hole: reading it whole to look at its first bytes would never end well.
    std::filesystem::resize_file(folder.native() + "/words.db", 1ULL << 40);
    COperateMdb db(path);
    ASSERT_TRUE(db.IsOpen());
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), 3);
}

TEST(DatabaseFiles, MissingFileIsToldOnceAndOtherFilesStayClosedQuietly) {
    TempFolder folder;
    CapturedOutput output;
    const CString missing = folder.logic() + u"Data\\word.mdb";
    COperateMdb db(missing);
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(output.printed, u"\n没有找到数据库文件" + missing + u"\n");
    CStringArray names;
    db.GetTableNames(names);
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_FALSE(db.TableExists(u"x"));

    output.printed.Empty();
    folder.writeFile("text.mdb", "WORD\r\n工程名称\r\n");
    folder.writeFile("cut.db", std::string("SQLite format 3\0", 16) + std::string(84, '\x01'));
    folder.writeFile("empty.mdb", "");
    for (const char16_t* name : {u"text.mdb", u"cut.db", u"empty.mdb"}) {
        COperateMdb other(folder.logic() + name);
        EXPECT_FALSE(other.IsOpen()) << CString(name);
        CStringArray values;
        EXPECT_FALSE(other.GetFieldValues(u"T", u"WORD", values, QX_KIND_CHAR, false));
    }
    EXPECT_EQ(output.printed, CString());
}
