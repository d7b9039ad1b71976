// Two hexmoord on one PostgreSQL; one is frozen (SIGSTOP) while its submit holds a project. The other keeps
// serving: other projects at once, the frozen project with a clear refusal once its lock wait ends, and with
// success after the database has cut the frozen transaction off. The frozen server's client never hears of
// a success, and no revision is half-written or misnumbered.
#include "common/PostgresCluster.h"
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <signal.h>

#include <future>
#include <thread>

using nlohmann::json;
using namespace team_test;

namespace {

json withRows(json tree, const std::string& model) {
    for (json& device : tree["children"][0]["children"])
        device["primary"] = json::array({{{"label", ""}, {"name", "breaker"}, {"model", model}, {"count", "1"},
                                          {"remark", ""}, {"code", ""}}});
    return tree;
}

TEST(FrozenServer, TheOtherServerGoesOnAndTheFrozenSubmitIsCutOffWhole) {
    PostgresCluster* cluster = SharedPostgresCluster();
    if (!cluster) GTEST_SKIP() << kNoPostgresServer;
    const std::string database = cluster->freshDatabase();
    AddAccounts(database, {{"acme", "ann"}, {"acme", "bob"}});
    // The idle limit leaves room for 34 refusals of a second each on a loaded machine under the sanitizers.
    const std::vector<std::string> timeouts{"--lock-timeout", "1", "--idle-transaction-timeout", "20"};
    HexmoordProcess frozen(database, timeouts);
    HexmoordProcess other(database, timeouts);
    const int frozenPid = frozen.pid();
    const auto value = [&](const std::string& sql) { return cluster->queryValue(database, sql); };

    CHttpTransport toFrozen(frozen.endpoint());
    const std::string annToken = LoginToken(toFrozen, "acme", "ann");
    constexpr int kDevices = 400;
    const json held = SubmittedTree(toFrozen, annToken, *project(u"held", kDevices));
    const json beside = SubmittedTree(toFrozen, annToken, *project(u"beside", 2));
    const std::string heldId = held["id"].get<std::string>();

    // Freezes the server once PostgreSQL shows its submit holding the project, and still holding it after.
    const std::string lockHolder = "SELECT pid FROM pg_locks WHERE locktype = 'advisory' AND granted AND classid = " +
                                   std::to_string(0x484d0001) + " AND objid = " + heldId;
    std::future<long> frozenSubmit;
    std::string backend;
    for (int attempt = 0; attempt < 5 && backend.empty(); ++attempt) {
        frozenSubmit = std::async(std::launch::async, [&] {
            CHttpTransport http(frozen.endpoint());
            return http.request("POST", "/api/submit-bom", json{{"tree", withRows(held, "frozen")}}.dump(), annToken).status;
        });
        while (value(lockHolder).empty() && frozenSubmit.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready) {
        }
        ::kill(frozenPid, SIGSTOP);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        backend = value(lockHolder);
        if (backend.empty()) {
            ::kill(frozenPid, SIGCONT);
            frozenSubmit.get();
        }
    }
    ASSERT_FALSE(backend.empty()) << "the submit was never caught holding its project";

    // More submits to the held project than the server has workers, beside requests that touch nothing held.
    CHttpTransport toOther(other.endpoint());
    const std::string bobToken = LoginToken(toOther, "acme", "bob");
    std::vector<std::future<JsonReply>> blocked;
    for (int i = 0; i < 34; ++i)
        blocked.push_back(std::async(std::launch::async, [&] {
            CHttpTransport http(other.endpoint());
            return Request(http, "POST", "/api/submit-bom", {{"tree", withRows(held, "blocked")}}, bobToken);
        }));
    EXPECT_EQ(Request(toOther, "POST", "/api/submit-bom", {{"tree", withRows(beside, "beside")}}, bobToken).status, 200);
    EXPECT_EQ(Request(toOther, "GET", "/api/projects", nullptr, LoginToken(toOther, "acme", "ann")).body.size(), 2u);
    for (auto& reply : blocked) {
        const JsonReply answer = reply.get();
        EXPECT_EQ(answer.status, 503);
        EXPECT_EQ(answer.body.value("error", ""), "Another submit holds this project and has not finished; nothing was changed. "
                                                  "Try again later.");
    }
    ASSERT_EQ(value("SELECT count(*) FROM pg_stat_activity WHERE pid = " + backend), "1")
        << "the frozen transaction ended before the other server's answers were judged";

    // The database ends the idle transaction; the project is free again.
    for (int waited = 0; waited < 600 && value("SELECT count(*) FROM pg_stat_activity WHERE pid = " + backend) != "0"; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(Request(toOther, "POST", "/api/submit-bom", {{"tree", withRows(held, "after")}}, bobToken).status, 200);

    ::kill(frozenPid, SIGCONT);
    EXPECT_EQ(frozenSubmit.get(), 503) << "the frozen server's client must not hear of a success";
    EXPECT_EQ(Request(toFrozen, "GET", "/api/projects", nullptr, annToken).status, 200) << "the thawed server serves again";

    // Every device of the held project: revision 1 (the project) and 2 (the submit after), nothing of the rest.
    const std::string revisionsOfHeld = "FROM revisions r JOIN nodes n ON n.id = r.node_id WHERE n.project_id = " + heldId;
    EXPECT_EQ(value("SELECT string_agg(DISTINCT b.model, ',' ORDER BY b.model) FROM bom_rows b JOIN revisions r ON "
                             "r.id = b.revision_id JOIN nodes n ON n.id = r.node_id WHERE n.project_id = " + heldId + " AND r.number > 1"),
              "after");
    EXPECT_EQ(value("SELECT count(*) " + revisionsOfHeld), std::to_string(2 * kDevices));
    EXPECT_EQ(value("SELECT count(*) FROM (SELECT r.node_id " + revisionsOfHeld +
                                 " GROUP BY r.node_id HAVING min(r.number) <> 1 OR max(r.number) <> count(*)) gaps"),
              "0");
    EXPECT_EQ(value("SELECT count(*) FROM bom_rows WHERE model IN ('frozen', 'blocked')"), "0");
}

} // namespace
