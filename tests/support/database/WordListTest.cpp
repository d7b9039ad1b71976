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

    // Data/word.mdb of `folder`: the demo's, made by the script the setup uses, or one SQLite makes of `sql`.
    static void makeWordDb(const TempFolder& folder, const std::string& sql = {}) {
        folder.makeFolder("Data");
        folder.writeFile("make.sql", sql);
        const std::string command = sql.empty() ? std::string(QX_SOURCE_DIR) + "/scripts/make-word-db '" + folder.native() + "/Data'"
                                                : "sqlite3 '" + folder.native() + "/Data/word.mdb' < '" + folder.native() + "/make.sql'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    CStringArray words() const {
        CStringArray read{u"left over"};
        GetWordList(kKey, read);
        return read;
    }

    TempFolder local;
    TempFolder common;
};

// The demo's words: 工程名称 first, at least two holding 工程 and four others.
void expectTheDemosWords(const CStringArray& words) {
    const auto holding = static_cast<int>(std::count_if(words.begin(), words.end(), [](const CString& w) { return w.Contains(u"工程"); }));
    ASSERT_GE(words.GetSize(), 6);
    EXPECT_EQ(words[0], CString(u"工程名称"));
    EXPECT_GE(holding, 2);
    EXPECT_GE(words.GetSize() - holding, 4);
}

} // namespace

TEST_F(WordList, LocalCopyServesUntilASharedCopyIsCopiedOverItAndRead) {
    makeWordDb(local);
    useCommonFolder();
    CapturedOutput output;
    const CStringArray fromLocal = words();  // no shared copy
    expectTheDemosWords(fromLocal);
    ::unsetenv("CORVANE_COMMON_HOME");  // shared and local folders the same: the file is read as it is
    EXPECT_EQ(words(), fromLocal);

    makeWordDb(common);
    makeWordDb(local, "CREATE TABLE \"x项目设备描述信息\" (WORD TEXT); INSERT INTO \"x项目设备描述信息\" VALUES ('stale');");
    useCommonFolder();
    EXPECT_EQ(words(), fromLocal);
    EXPECT_EQ(local.readFile("Data/word.mdb"), common.readFile("Data/word.mdb"));
    EXPECT_EQ(output.printed, CString());
}

TEST_F(WordList, NoDatabaseAnywhereGivesAnEmptyListAndOneMessage) {
    useCommonFolder();
    CapturedOutput output;
    EXPECT_TRUE(words().IsEmpty());
    EXPECT_EQ(output.printed, u"\n没有找到数据库文件" + local.logic() + u"Data\\word.mdb\n");
}

TEST_F(WordList, TableNeedsSomethingBeforeTheKey) {
    makeWordDb(local, R"(
        CREATE TABLE "项目设备描述信息" (WORD TEXT);  INSERT INTO "项目设备描述信息" VALUES ('exact');
        CREATE TABLE "B项目设备描述信息" (WORD TEXT); INSERT INTO "B项目设备描述信息" VALUES ('second');
        CREATE TABLE "A项目设备描述信息" (WORD TEXT, N INTEGER);
        INSERT INTO "A项目设备描述信息" VALUES ('first', 1), (NULL, 2), ('first', 3);
    )");
    EXPECT_EQ(words(), CStringArray({u"first", u"", u"first"}));  // not made unique, and a null reads as an empty word
    makeWordDb(local, "DROP TABLE \"A项目设备描述信息\"; DROP TABLE \"B项目设备描述信息\";");
    EXPECT_TRUE(words().IsEmpty());
}
