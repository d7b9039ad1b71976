// Session tokens: random, tied to their user, and lapsing after the idle limit, counted from the last use.
#include "centre/server/SessionTable.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

TEST(SessionTable, ATokenLapsesAfterTheIdleLimitCountedFromItsLastUse) {
    auto now = std::chrono::steady_clock::time_point{};
    CSessionTable sessions(8h, [&] { return now; });
    const std::string token = sessions.open({u"acme", u"ann"});
    EXPECT_EQ(token.size(), 64u);
    EXPECT_NE(token, sessions.open({u"acme", u"ann"}));

    now += 7h;
    const auto user = sessions.use(token);
    ASSERT_TRUE(user);
    EXPECT_EQ(user->enterprise, CString(u"acme"));
    EXPECT_EQ(user->user, CString(u"ann"));
    now += 8h;  // exactly the limit since the last use: still good
    EXPECT_TRUE(sessions.use(token));
    now += 8h + 1s;
    EXPECT_FALSE(sessions.use(token));
    EXPECT_FALSE(sessions.use(token));
}

TEST(SessionTable, UnknownAndClosedTokensNameNobody) {
    CSessionTable sessions;
    EXPECT_FALSE(sessions.use(""));
    EXPECT_FALSE(sessions.use(std::string(64, 'a')));
    const std::string token = sessions.open({u"acme", u"bob"});
    sessions.close(token);
    EXPECT_FALSE(sessions.use(token));
}

} // namespace
