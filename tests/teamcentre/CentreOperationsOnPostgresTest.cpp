// The centre's operations suite, the same cases as on the SQLite store, run on the PostgreSQL store of the
// throwaway cluster. The suite is compiled here once more with PostgreSQL as its only store.
#include "common/PostgresCluster.h"
#include "platform/CentreTestSupport.h"
#include "platform/cloud/postgres/PostgresCentreStore.h"

namespace centre_test {

inline std::vector<StoreMaker> PostgresStoreMakers() {
    if (!SharedPostgresCluster()) return {};
    return {{"Postgres", [](const TempFolder&) -> std::unique_ptr<ICentreStore> {
                 return std::make_unique<CPostgresCentreStore>(SharedPostgresCluster()->freshDatabase());
             }}};
}

} // namespace centre_test

TEST(CentreOperationsOnPostgres, ThePostgresStoreIsInstalled) {
    if (!SharedPostgresCluster()) GTEST_SKIP() << kNoPostgresServer;
    EXPECT_EQ(centre_test::PostgresStoreMakers().size(), 1u);
}

// The suite's own list of stores is replaced by PostgreSQL alone; without a server it has no case to run.
// GCC takes an included file for a header and warns of its unnamed namespace; here it is one program's.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsubobject-linkage"
#endif
#define StoreMakers PostgresStoreMakers
#include "platform/CentreOperationsTest.cpp"
#undef StoreMakers
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CentreOperations);
