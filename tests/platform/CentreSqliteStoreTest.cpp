// The SQLite store of the BOM centre: its schema versions, damaged and foreign files, and other processes
// holding or writing the same file.
#include "CentreTestSupport.h"

#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreIds.h"
#include "centre/sqlite/SqliteCentreSchema.h"

#include <csignal>
#include <gtest/gtest.h>
#include <cstdio>
#include <numeric>
#include <sys/wait.h>
#include <unistd.h>

using namespace centre_test;

namespace {

// Runs SQL on the file with SQLite's own shell, as another program would.
void runSql(const std::string& path, const char* sql) {
    FILE* shell = popen(("sqlite3 -bail '" + path + "'").c_str(), "w");
    ASSERT_TRUE(shell);
    fputs(sql, shell);
    EXPECT_EQ(pclose(shell), 0) << sql;
}

CString refusal(const std::string& path, int busyTimeoutMs = kCentreBusyTimeoutMs) {
    try {
        CSqliteCentreStore store(path, busyTimeoutMs);
    } catch (const CCentreStoreError& error) {
        return error.message();
    }
    return CString();
}

int exitStatus(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

const CentreUser ann{u"华东电气", u"ann"};

} // namespace

TEST(CentreSqliteStore, AStoreOfTheFirstReleaseIsBroughtUpToTheVersionThisBuildWritesKeepingItsAccounts) {
    EXPECT_EQ(CentreMigrations().back().version, kCentreSchemaVersion);
    TempFolder folder;
    const std::string path = folder.native() + "/centre.db";
    runSql(path, CentreMigrations().front().sql);
    runSql(path, "INSERT INTO accounts VALUES ('e', 'u', 'hash', 'then'); INSERT INTO usage_files VALUES (1, 'e', 'u', 'i', 'k', 't', 'r');");
    CSqliteCentreStore store(path);
    EXPECT_EQ(store.schemaVersion(), kCentreSchemaVersion);
    const auto account = store.account(u"e", u"u");
    ASSERT_TRUE(account);
    EXPECT_EQ(std::make_pair(account->credentialHash, account->disabled), std::make_pair(CString(u"hash"), false));
    EXPECT_EQ(store.usageFiles().size(), 1u);
    auto tree = substation();
    CBomCentreOperations(store).SubmitItm(ann, *tree);
    EXPECT_EQ(tree->m_strID, u"1");
}

TEST(CentreSqliteStore, NewerDamagedAndForeignFilesAreRefusedWithTheirReason) {
    TempFolder folder;
    { CSqliteCentreStore store(folder.native() + "/newer.db"); }
    runSql(folder.native() + "/newer.db", "UPDATE schema_version SET version = 99");
    folder.writeFile("text.db", std::string(4096, 'x'));
    runSql(folder.native() + "/foreign.db", "CREATE TABLE invoices (id INTEGER)");
    for (const auto& [file, reason] : std::vector<std::pair<std::string, const char16_t*>>{
             {"newer.db", u"schema version 99, newer than this build knows"},
             {"text.db", u"is damaged"},
             {"foreign.db", u"some other database"}})
        EXPECT_TRUE(refusal(folder.native() + "/" + file).Contains(reason)) << refusal(folder.native() + "/" + file);

    // A real store whose pages were overwritten halfway opens; its first read is refused.
    const std::string damaged = folder.native() + "/damaged.db";
    {
        CSqliteCentreStore store(damaged);
        auto tree = substation();
        CBomCentreOperations(store).SubmitItm(ann, *tree);
    }
    std::string bytes = folder.readFile("damaged.db");
    for (size_t i = 100; i < bytes.size(); i += 7) bytes[i] = static_cast<char>(0xA5);
    folder.writeFile("damaged.db", bytes);
    try {
        CSqliteCentreStore store(damaged);
        CBomCentreOperations(store).ProjectTree(ann, u"1");
        ADD_FAILURE() << "a damaged store was read";
    } catch (const CCentreStoreError& error) {
        EXPECT_TRUE(error.message().Contains(u"BOM centre store")) << error.message();
    }
}

// One file: a process killed halfway through its submit, then one that holds the store.
TEST(CentreSqliteStore, AProcessKilledInASubmitLeavesNothingOfItAndAHeldStoreIsWaitedForThenRefused) {
    TempFolder folder;
    const std::string path = folder.native() + "/centre.db";
    { CSqliteCentreStore store(path); }
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        CSqliteCentreStore store(path);
        BreakingStore dying(store, 4, [] { raise(SIGKILL); });
        auto tree = substation();
        CBomCentreOperations(dying).SubmitItm(ann, *tree);
        _exit(0);
    }
    int status = 0;
    waitpid(writer, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(CSqliteCentreStore(path).allProjects().empty());

    int ready[2];
    int release[2];
    ASSERT_TRUE(pipe(ready) == 0 && pipe(release) == 0);
    char byte = 1;
    const pid_t holder = fork();
    ASSERT_GE(holder, 0);
    if (holder == 0) {
        CSqliteCentreStore holding(path);
        holding.beginWrite();
        if (write(ready[1], &byte, 1) != 1 || read(release[0], &byte, 1) != 1) _exit(2);
        holding.commit();
        _exit(0);
    }
    ASSERT_EQ(read(ready[0], &byte, 1), 1);

    CSqliteCentreStore store(path, 200);
    CBomCentreOperations centre(store);
    auto tree = substation();
    try {
        centre.SubmitItm(ann, *tree);
        ADD_FAILURE() << "a submit went through a held store";
    } catch (const CCentreStoreError& error) {
        EXPECT_TRUE(error.locked() && error.message().Contains(u"locked by another process")) << error.message();
    }
    EXPECT_TRUE(tree->m_strID.IsEmpty());

    ASSERT_EQ(write(release[1], &byte, 1), 1);
    EXPECT_EQ(exitStatus(holder), 0);
    centre.SubmitItm(ann, *tree);
    EXPECT_EQ(centre.Projects(ann).size(), 1u);
    EXPECT_EQ(store.nodes(*ParseCentreId(tree->m_strID)).size(), 4u);
}

TEST(CentreSqliteStore, TwoProcessesSubmittingToOneStoreNumberEveryRevisionOnce) {
    TempFolder folder;
    const std::string path = folder.native() + "/centre.db";
    auto tree = substation();
    {
        CSqliteCentreStore store(path);
        CBomCentreOperations(store).SubmitItm(ann, *tree);
    }
    constexpr int kSubmits = 15;
    const auto submitMany = [&] {
        CSqliteCentreStore store(path);
        CBomCentreOperations centre(store);
        bool allTaken = true;
        for (int i = 0; i < kSubmits; ++i) allTaken = centre.SubmitBom(ann, *tree).accepted == 3 && allTaken;
        return allTaken;
    };
    const pid_t other = fork();
    ASSERT_GE(other, 0);
    if (other == 0) _exit(submitMany() ? 0 : 1);
    EXPECT_TRUE(submitMany());
    EXPECT_EQ(exitStatus(other), 0);

    CSqliteCentreStore store(path);
    std::vector<int> expected(1 + 2 * kSubmits);
    std::iota(expected.begin(), expected.end(), 1);
    for (const HMProjectTree_INFO* device : tree->m_arrCabinets) {
        std::vector<int> numbers;
        for (const CentreRevision& revision : store.revisions(*ParseCentreId(device->m_strID))) numbers.push_back(revision.number);
        EXPECT_EQ(numbers, expected) << device->m_strName;
    }
}
