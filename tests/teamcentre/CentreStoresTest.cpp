// The BOM centre's stores: how each keeps texts and rows and rolls a write back (on both, the same
// checks), and the PostgreSQL store's schema and migrations on a throwaway cluster. The SQLite file's own
// cases are CentreSqliteStoreTest's; several writers at once are the load tests' part.
#include "common/PostgresCluster.h"
#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreError.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "centre/postgres/PostgresCentreStore.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <gtest/gtest.h>

using namespace team_test;

namespace {

class PostgresStore : public ::testing::Test {
protected:
    void SetUp() override {
        cluster = SharedPostgresCluster();
        if (!cluster) GTEST_SKIP() << kNoPostgresServer;
        database = cluster->freshDatabase();
    }

    PostgresCluster* cluster = nullptr;
    std::string database;
    const CentreUser ann{u"acme", u"ann"};
};

// A fresh store of each kind.
class EachStore : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override {
        const auto database = FreshDatabase(GetParam(), folder);
        if (!database) GTEST_SKIP() << kNoPostgresServer;
        opened = CentreStoreOpener(*database)();
    }

    TempFolder folder;
    std::unique_ptr<ICentreStore> opened;
};

TEST_F(PostgresStore, AnEmptyDatabaseGetsTheCurrentSchemaOnceAndANewerOneIsRefusedUntouched) {
    {
        CPostgresCentreStore store(database);
        EXPECT_EQ(store.schemaVersion(), kCentreSchemaVersion);
        CBomCentreOperations centre(store);
        EXPECT_EQ(centre.CheckAccount(u"acme", u"ann", u"secret"), 1);
        auto tree = team_test::project(u"华东变电站", 2);
        centre.SubmitItm(ann, *tree);
    }
    // Opening again migrates nothing and finds what was kept.
    {
        CPostgresCentreStore again(database);
        EXPECT_EQ(again.schemaVersion(), kCentreSchemaVersion);
        CBomCentreOperations centre(again);
        EXPECT_EQ(centre.CheckAccount(u"acme", u"ann", u"secret"), 1);
        const auto projects = centre.Projects(ann);
        ASSERT_EQ(projects.size(), 1u);
        EXPECT_EQ(projects[0].name, CString(u"华东变电站"));
    }
    ASSERT_TRUE(cluster->runSql(database, "UPDATE schema_version SET version = 99"));
    EXPECT_THROW(CPostgresCentreStore{database}, CCentreStoreError);
    ASSERT_TRUE(cluster->runSql(database, "UPDATE schema_version SET version = " + std::to_string(kCentreSchemaVersion)));
    EXPECT_NO_THROW(CPostgresCentreStore{database});
    // A server that cannot be reached is a store error too.
    const std::string closed = "host=127.0.0.1 port=" + std::to_string(FreeLoopbackPort()) + " user=postgres connect_timeout=5";
    EXPECT_THROW(CPostgresCentreStore{closed}, CCentreStoreError);
}

TEST_P(EachStore, TextKeepsEveryCharacterAndAWriteRolledBackLeavesNothing) {
    ICentreStore& store = *opened;
    const CString name = u"变电站 'a' \"b\" \\ ; DROP TABLE projects; --";
    {
        CentreTransaction transaction(store, CentreTransaction::Mode::Write);
        store.addProject({0, u"acme", u"gone", u"2026-01-01T00:00:00Z"});
        // Not committed: rolled back when the transaction ends.
    }
    EXPECT_TRUE(store.projects(u"acme").empty());
    const long long id = store.addProject({0, u"acme", name, u"2026-01-01T00:00:00Z"});
    const auto found = store.project(id);
    ASSERT_TRUE(found);
    EXPECT_EQ(std::make_tuple(found->name, found->lastRevisionId), std::make_tuple(name, 0LL));
    EXPECT_FALSE(store.project(id + 1));
    EXPECT_TRUE(store.projects(u"other").empty());
    // No call means "every enterprise" but the one that says so; PostgreSQL would cut at a NUL, so no store
    // keeps one.
    EXPECT_TRUE(store.projects(CString()).empty());
    EXPECT_EQ(store.allProjects().size(), 1u);
    EXPECT_THROW(store.addProject({0, CString(u"acme\0x", 6), u"p", u"t"}), CCentreError);
    EXPECT_THROW(store.projects(CString(u"\0", 1)), CCentreError);
}

TEST_P(EachStore, RowsComeBackInTheirOrderWithTheirSystem) {
    ICentreStore& store = *opened;
    const long long project = store.addProject({0, u"acme", u"p", u"t"});
    const long long sub = store.addNode({0, project, 0, 0, u"出线", u"100", u"", u"", u"", u""});
    const long long device = store.addNode({0, project, sub, 0, u"AH1", u"0", u"AH1", u"", u"", u""});
    EXPECT_EQ(std::make_pair(store.node(sub)->parentId, store.node(device)->parentId), std::make_pair(0LL, sub));
    const std::vector<CentreRow> rows{{u"", u"b", u"m", u"2", u"", u"", false},
                                      {u"", u"a", u"m", u"1", u"r", u"K", true},
                                      {u"{x}", u"a \"quoted\", b\\c", u"NULL", u"", u"'}{,", u"\u2245", false}};
    const long long first = store.addRevision({0, device, 1, u"itm", u"acme", u"ann", u"t"}, rows);
    const long long second = store.addRevision({0, device, 2, u"bom", u"acme", u"bob", u"t"}, {});
    EXPECT_EQ(store.rows(first), rows);
    EXPECT_TRUE(store.rows(second).empty());
    EXPECT_EQ(std::make_pair(store.currentRevision(device)->number, store.currentRevision(device)->user), std::make_pair(2, CString(u"bob")));
    EXPECT_EQ(store.revisions(device).size(), 2u);
    EXPECT_EQ(store.project(project)->lastRevisionId, second);
    // A revision number a device already has is refused.
    EXPECT_THROW(store.addRevision({0, device, 2, u"bom", u"acme", u"ann", u"t"}, {}), CCentreStoreError);
}

INSTANTIATE_TEST_SUITE_P(Stores, EachStore, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
