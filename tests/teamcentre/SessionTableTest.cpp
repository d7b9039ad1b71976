// Session tokens: random, tied to their user, kept in the store only as a hash (so another table on the
// same store, as after a restart or on a second server, knows them), lapsing after the idle limit counted
// from the last use.
#include "centre/server/SessionTable.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "common/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

TEST(SessionTable, ATokenLapsesAfterTheIdleLimitIsKnownToEveryTableOnTheStoreAndNoOtherTokenNamesAnyone) {
    TempFolder folder;
    CSqliteCentreStore store(folder.native() + "/centre.db");
    long long now = 1'000'000;
    CSessionTable sessions(8h, [&] { return now; });
    const std::string token = sessions.open(store, {u"acme", u"ann"});
    EXPECT_EQ(token.size(), 64u);
    const std::string neverUsed = sessions.open(store, {u"acme", u"ann"});
    EXPECT_NE(token, neverUsed);
    // The store holds the hash, which opens nothing.
    const CString hash = SessionTokenHash(token);
    ASSERT_TRUE(store.session(hash));
    EXPECT_EQ(hash.GetLength(), 64);
    EXPECT_NE(hash.ToUtf8(), token);
    EXPECT_FALSE(sessions.use(store, hash.ToUtf8()));

    now += 7 * 3600;
    CSessionTable restarted(8h, [&] { return now; });
    const auto user = restarted.use(store, token);
    ASSERT_TRUE(user);
    EXPECT_EQ(std::make_pair(user->enterprise, user->user), std::make_pair(CString(u"acme"), CString(u"ann")));
    now += 8 * 3600;  // exactly the limit since the last use: still good
    EXPECT_TRUE(sessions.use(store, token));
    now += 8 * 3600 + 1;
    EXPECT_FALSE(sessions.use(store, token));
    EXPECT_FALSE(store.session(hash));

    // Unknown, malformed and closed tokens name nobody.
    const std::string bob = sessions.open(store, {u"acme", u"bob"});
    EXPECT_FALSE(store.session(SessionTokenHash(neverUsed))) << "a login takes the lapsed sessions away";
    for (const std::string& other : {std::string(), std::string(64, 'a'), bob + "0", bob.substr(1), std::string(64, 'A')})
        EXPECT_FALSE(sessions.use(store, other)) << other;
    EXPECT_TRUE(sessions.use(store, bob));
    sessions.close(store, bob);
    EXPECT_FALSE(sessions.use(store, bob));
}

} // namespace
