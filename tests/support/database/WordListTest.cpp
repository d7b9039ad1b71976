#include "common/CapturedOutput.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "support/database/WordList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

const CString kKey = u"项目设备描述信息";

class WordList : public ::testing::Test {
protected:
    void SetUp() override {
        SetCorvaneInstallDirOverride(local.logic());
        ::unsetenv("CORVANE_COMMON_HOME");
    }
    void TearDown() override {
        SetCorvaneInstallDirOverride(CString());
        ::unsetenv("CORVANE_COMMON_HOME");
    }

    void useCommonFolder() { ::setenv("CORVANE_COMMON_HOME", common.native().c_str(), 1); }

    // The demo's word database, made by the script the setup uses.
    static void makeWordDb(const TempFolder& folder) {
        folder.makeFolder("Data");
        const std::string command =
            std::string(QX_SOURCE_DIR) + "/scripts/make-word-db '" + folder.native() + "/Data'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    static void makeSqlite(const TempFolder& folder, const std::string& sql) {
        folder.writeFile("make.sql", sql);
        folder.makeFolder("Data");
        const std::string command =
            "sqlite3 '" + folder.native() + "/Data/word.mdb' < '" + folder.native() + "/make.sql'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    TempFolder local;
    TempFolder common;
};

int countHolding(const CStringArray& words, const CString& part) {
    return static_cast<int>(std::count_if(words.begin(), words.end(), [&](const CString& w) { return w.Contains(part); }));
}

} // namespace

TEST_F(WordList, SharedCopyIsCopiedOverTheLocalOneAndRead) {
    makeWordDb(common);
    makeSqlite(local, "CREATE TABLE \"x项目设备描述信息\" (WORD TEXT); INSERT INTO \"x项目设备描述信息\" VALUES ('stale');");
    useCommonFolder();
    CapturedOutput output;
    CStringArray words;
    GetWordList(kKey, words);
    ASSERT_GE(words.GetSize(), 6);
    EXPECT_EQ(words[0], CString(u"工程名称"));
    EXPECT_GE(countHolding(words, u"工程"), 2);
    EXPECT_GE(words.GetSize() - countHolding(words, u"工程"), 4);
    EXPECT_EQ(local.readFile("Data/word.mdb"), common.readFile("Data/word.mdb"));
    EXPECT_EQ(output.printed, CString());
}

TEST_F(WordList, LocalCopyServesWhenTheSharedOneIsMissing) {
    makeWordDb(local);
    useCommonFolder();
    CStringArray words;
    GetWordList(kKey, words);
    EXPECT_GE(countHolding(words, u"工程"), 2);

    // Shared and local folders the same: the file is read as it is.
    ::unsetenv("CORVANE_COMMON_HOME");
    CStringArray again;
    GetWordList(kKey, again);
    EXPECT_EQ(again, words);
}

TEST_F(WordList, NoDatabaseAnywhereGivesAnEmptyListAndOneMessage) {
    useCommonFolder();
    CapturedOutput output;
    CStringArray words;
    words.Add(u"left over");
    GetWordList(kKey, words);
    EXPECT_TRUE(words.IsEmpty());
    EXPECT_EQ(output.printed, u"\n没有找到数据库文件" + local.logic() + u"Data\\word.mdb\n");
}

TEST_F(WordList, TableNeedsSomethingBeforeTheKey) {
    makeSqlite(local, R"(
        CREATE TABLE "项目设备描述信息" (WORD TEXT);  INSERT INTO "项目设备描述信息" VALUES ('exact');
        CREATE TABLE "B项目设备描述信息" (WORD TEXT); INSERT INTO "B项目设备描述信息" VALUES ('second');
        CREATE TABLE "A项目设备描述信息" (WORD TEXT, N INTEGER);
        INSERT INTO "A项目设备描述信息" VALUES ('first', 1), (NULL, 2), ('first', 3);
    )");
    CStringArray words;
    GetWordList(kKey, words);
    EXPECT_EQ(words.GetSize(), 3);  // not made unique, and a null reads as an empty word
    EXPECT_EQ(words[0], CString(u"first"));
    EXPECT_EQ(words[1], CString());

    makeSqlite(local, "DROP TABLE \"A项目设备描述信息\"; DROP TABLE \"B项目设备描述信息\";");
    GetWordList(kKey, words);
    EXPECT_TRUE(words.IsEmpty());
}
