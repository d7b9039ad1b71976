#include "DatabaseReads.h"
#include "common/CapturedOutput.h"
#include "common/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

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
    Values wordsLike(COperateMdb& db, const CString& pattern) { return whereOf(db, table, u"N", CStringArray({u"WORD"}), CStringArray({pattern})); }

    TempFolder folder;
    CString path;
    const CString table = u"Qx项目设备描述信息";
};

} // namespace

TEST_F(SqliteFiles, TablesColumnsConditionsAndOrderingReadAsOnAccess) {
    CapturedOutput output;
    COperateMdb db(path);
    ASSERT_TRUE(db.IsOpen());
    EXPECT_EQ(tablesOf(db), (Values{u"QxTableName", table}));  // the view is left out
    EXPECT_FALSE(db.TableExists(u"Words"));
    EXPECT_EQ(columnOf(db, table, u"WORD", QX_KIND_CHAR), (Values{u"工程名称", u"设计单位", u"abc", u"ABC", u"", u"WORD"}));
    EXPECT_EQ(columnOf(db, table, u"WORD", QX_KIND_CHAR, true), (Values{u"工程名称", u"设计单位", u"abc", u"", u"WORD"}));
    EXPECT_EQ(columnOf(db, table, u"X", QX_KIND_DOUBLE), (Values{u"2.50", u"0.00", u"1.00", u"3.00", u"0.00", u"0.00"}));
    EXPECT_EQ(columnOf(db, table, u"B", QX_KIND_BOOLEAN, true), (Values{u"1", u"0"}));
    EXPECT_EQ(columnOf(db, table, u"Missing", QX_KIND_CHAR), Values{kFailed});
    EXPECT_EQ((std::vector<int>{kindOf(db, table, u"N"), kindOf(db, table, u"WORD")}),
              (std::vector<int>{QX_KIND_INTEGER, QX_KIND_VARWCHAR}));
    EXPECT_EQ(fieldsOf(db, table), (Values{u"WORD", u"N", u"X", u"B"}));
    EXPECT_EQ(db.GetRecordCount(table), 6);

    EXPECT_EQ(wordsLike(db, u"%工程%"), Values{u"1"});
    EXPECT_EQ(wordsLike(db, u"WORD"), Values{u"6"});  // a value that happens to be a column's name is still a text
    EXPECT_EQ(whereOf(db, table, u"N", CStringArray({}), CStringArray({})), Values{});
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(whereOf(db, table, u"N", CStringArray({u"WORD"}), CStringArray({})), Values{kFailed});
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, CString(u"程序员应用此函数,传入的参数有错误,请检查!"));
    EXPECT_EQ(output.boxes[0].caption, CString(u"Corvane"));

    CStringArray values;
    ASSERT_TRUE(db.GetOrderedFieldValues(u"QxTableName", u"Pos", values, QX_KIND_INTEGER, false));
    EXPECT_EQ(valuesOf(values), (Values{u"1", u"2", u"3"}));
    EXPECT_FALSE(db.GetOrderedFieldValues(table, u"N", values, QX_KIND_INTEGER, false));
    EXPECT_EQ(rowsOf(db, table, CStringArray({u"WORD", u"N"}), CStringArray({u"a_c", QX_VTNULL_VALUE})),
              (Values{u"abc|3|1.005|0", u"ABC|4|3|0"}));
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
    EXPECT_EQ(wordsLike(db, u"a, b"), (Values{u"9", u"9"}));
    ASSERT_TRUE(db.DeleteRecords(table, CStringArray({u"WORD", u"N"}), CStringArray({u"制造厂家", u"7"}), CKindArray({129, 3})));
    EXPECT_EQ(db.GetRecordCount(table), 6);

    const CArray<int> lengths({20, 0});
    ASSERT_TRUE(db.CreateTable(u"new table-1", CStringArray({u"Name", u"Count"}), CKindArray({129, 3}), lengths));
    EXPECT_TRUE(db.TableExists(u"new_table_1"));
    EXPECT_EQ(kindOf(db, u"new_table_1", u"Count"), QX_KIND_INTEGER);
    EXPECT_TRUE(output.boxes.empty());

    EXPECT_FALSE(db.CreateTable(u"NEW_TABLE_1", CStringArray({u"Name"}), CKindArray({129}), lengths));
    EXPECT_FALSE(db.CreateTable(u"other", CStringArray({u"Name", u"When"}), CKindArray({129, 99}), lengths));
    EXPECT_FALSE(db.TableExists(u"other"));
    // SQLite has no SELECT INTO: the copy fails and the table stays.
    EXPECT_FALSE(db.RenameTable(u"new_table_1", u"renamed"));
    EXPECT_TRUE(db.TableExists(u"new_table_1"));
    EXPECT_FALSE(db.RenameTable(u"new_table_1", u"qxtablename"));
    Values boxes;
    for (const CapturedOutput::Box& box : output.boxes) boxes.push_back(box.text);
    EXPECT_EQ(boxes, (Values{u"该表名数据库中已经有了,请更换表名", u"Enum Error:When unknow. Create Table false.",
                             u"数据库表名已经存在! "}));
    EXPECT_EQ(output.boxes.at(0).style, unsigned(MB_OK | MB_ICONWARNING));

    ASSERT_TRUE(db.DropTable(u"new_table_1"));
    EXPECT_FALSE(db.TableExists(u"new_table_1"));
    EXPECT_TRUE(db.ExecuteSql(u"DELETE FROM QxTableName WHERE UseTableName = \"b\""));
    db.CloseDatabase();
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(db.GetRecordCount(u"QxTableName"), -1);
    EXPECT_EQ(COperateMdb(path).GetRecordCount(u"QxTableName"), 2);
}

TEST_F(SqliteFiles, OneCallRunsOneStatementWhateverTheValuesHold) {
    COperateMdb db(path);
    // A value that closes its literal and goes on with a statement of its own.
    EXPECT_FALSE(db.InsertRecord(table, CStringArray({u"WORD"}), CStringArray({u"x\"); DROP TABLE QxTableName; --"}), CKindArray({129})));
    EXPECT_FALSE(db.DeleteRecords(table, CStringArray({u"WORD"}), CStringArray({u"x\"; DROP TABLE QxTableName; --"}), CKindArray({129})));
    EXPECT_FALSE(db.UpdateRecords(table, CStringArray({u"N"}), CStringArray({u"1; DELETE FROM QxTableName"}), CKindArray({3}),
                                  CStringArray({u"WORD"}), CStringArray({u"%"}), CKindArray({129})));
    EXPECT_EQ(wordsLike(db, u"x\"; DELETE FROM QxTableName; --"), Values{kFailed});
    EXPECT_FALSE(db.ExecuteSql(u"DELETE FROM QxTableName; DROP TABLE QxTableName"));
    EXPECT_EQ((std::vector<int>{db.GetRecordCount(u"QxTableName"), db.GetRecordCount(table)}), (std::vector<int>{3, 6}));
    // A lone quote in a condition breaks the statement; a doubled one stands for one quote.
    EXPECT_EQ(wordsLike(db, u"only\""), Values{kFailed});
    ASSERT_TRUE(db.InsertRecord(table, CStringArray({u"WORD", u"N"}), CStringArray({u"12\"\" panel", u"8"}), CKindArray({129, 3})));
    EXPECT_EQ(wordsLike(db, u"12\"\"%"), Values{u"8"});
    // White space, comments and a closing semicolon are no second statement.
    EXPECT_TRUE(db.ExecuteSql(u"DELETE FROM QxTableName WHERE Pos = 3; -- the last one\n  ;"));
    db.CloseDatabase();

    // The engine is chosen from the first bytes alone: a terabyte, nearly all of it a hole, read whole to look
    // at its first bytes would never end well.
    std::filesystem::resize_file(folder.native() + "/words.db", 1ULL << 40);
    EXPECT_EQ(COperateMdb(path).GetRecordCount(u"QxTableName"), 2);
}

TEST(DatabaseFiles, MissingFileIsToldOnceAndOtherFilesStayClosedQuietly) {
    TempFolder folder;
    CapturedOutput output;
    const CString missing = folder.logic() + u"Data\\word.mdb";
    COperateMdb db(missing);
    EXPECT_FALSE(db.IsOpen());
    EXPECT_EQ(output.printed, u"\n没有找到数据库文件" + missing + u"\n");
    EXPECT_EQ(tablesOf(db), Values{});
    EXPECT_FALSE(db.TableExists(u"x"));

    output.printed.Empty();
    folder.writeFile("text.mdb", "WORD\r\n工程名称\r\n");
    folder.writeFile("cut.db", std::string("SQLite format 3\0", 16) + std::string(84, '\x01'));
    folder.writeFile("empty.mdb", "");
    for (const char16_t* name : {u"text.mdb", u"cut.db", u"empty.mdb"}) {
        COperateMdb other(folder.logic() + name);
        EXPECT_FALSE(other.IsOpen()) << CString(name);
        EXPECT_EQ(columnOf(other, u"T", u"WORD", QX_KIND_CHAR), Values{kFailed});
    }
    EXPECT_EQ(output.printed, CString());
}
