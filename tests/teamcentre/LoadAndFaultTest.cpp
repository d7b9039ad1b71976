// hexmoord under load and under a crash: 8 clients submitting 50 revisions each of one project's devices at
// once keep every revision, numbered without gaps; a server killed in the middle of a submit leaves it
// whole or absent.
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <atomic>
#include <chrono>
#include <map>
#include <set>
#include <thread>

using nlohmann::json;
using namespace team_test;

namespace {

constexpr int kClients = 8;

class HexmoordUnderLoad : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override {
        const auto found = FreshDatabase(GetParam(), folder);
        if (!found) GTEST_SKIP() << kNoPostgresServer;
        database = *found;
        std::vector<Account> accounts{{"acme", "ann"}};
        for (int c = 0; c < kClients; ++c) accounts.push_back({"acme", "user" + std::to_string(c)});
        AddAccounts(database, accounts);
        server = std::make_unique<HexmoordProcess>(database);
    }

    // Ann's project of `devices` devices as the server sent it back.
    json seedProject(int devices, int rowsPerDevice = 1) {
        CHttpTransport http(server->endpoint());
        const std::string token = LoginToken(http, "acme", "ann");
        auto tree = project(u"共用项目", devices);
        for (HMProjectTree_INFO* device : tree->m_arrCabinets)
            for (int r = 1; r < rowsPerDevice; ++r)
                device->m_arrPrimaryBom.Add({CString(), CString(("part " + std::to_string(r)).c_str()), u"M", u"1", CString(), CString()});
        const JsonReply reply = Request(http, "POST", "/api/submit-itm", {{"tree", TreeToJson(*tree)}}, token);
        EXPECT_EQ(reply.status, 200);
        return reply.body["tree"];
    }

    // Every device's revisions with their rows, by device ID.
    std::map<std::string, json> revisionsOf(const json& tree) {
        CHttpTransport http(server->endpoint());
        const std::string token = LoginToken(http, "acme", "ann");
        std::map<std::string, json> found;
        for (const json& device : tree["children"][0]["children"]) {
            const std::string id = device["id"];
            const JsonReply reply =
                Request(http, "GET", "/api/projects/" + tree["id"].get<std::string>() + "/devices/" + id + "/revisions", nullptr, token);
            EXPECT_EQ(reply.status, 200);
            found[id] = reply.body;
        }
        return found;
    }

    TempFolder folder;
    std::string database;
    std::unique_ptr<HexmoordProcess> server;
};

TEST_P(HexmoordUnderLoad, EightClientsOfFiftyRevisionsEachLoseAndMergeNothing) {
    constexpr int kRevisions = 50;
    constexpr int kDevices = 3;
    const json tree = seedProject(kDevices);

    std::vector<std::thread> clients;
    std::vector<int> accepted(kClients, 0);
    for (int c = 0; c < kClients; ++c) {
        clients.emplace_back([&, c] {
            CHttpTransport http(server->endpoint());
            const std::string token = LoginToken(http, "acme", "user" + std::to_string(c));
            for (int r = 0; r < kRevisions; ++r) {
                json mine = tree;
                // The row names which client made which revision, so that a merged or lost one shows.
                for (json& device : mine["children"][0]["children"])
                    device["primary"] = json::array({{{"label", ""}, {"name", "load"}, {"model", std::to_string(c)},
                                                      {"count", std::to_string(r)}, {"remark", ""}, {"code", ""}}});
                const JsonReply reply = Request(http, "POST", "/api/submit-bom", {{"tree", mine}}, token);
                if (reply.status == 200) accepted[c] += reply.body["report"]["accepted"].get<int>();
            }
        });
    }
    for (std::thread& client : clients) client.join();
    for (int c = 0; c < kClients; ++c) EXPECT_EQ(accepted[c], kRevisions * kDevices) << "client " << c;

    for (const auto& [id, revisions] : revisionsOf(tree)) {
        ASSERT_EQ(revisions.size(), 1u + kClients * kRevisions) << "device " << id;
        std::set<std::pair<std::string, std::string>> made;
        for (size_t i = 0; i < revisions.size(); ++i) {
            EXPECT_EQ(revisions[i]["number"], static_cast<int>(i) + 1);
            if (i == 0) continue;
            ASSERT_EQ(revisions[i]["rows"].size(), 1u);
            const json& row = revisions[i]["rows"][0];
            EXPECT_EQ(revisions[i]["user"], "user" + row["model"].get<std::string>());
            EXPECT_TRUE(made.insert({row["model"].get<std::string>(), row["count"].get<std::string>()}).second) << "a revision came twice";
        }
        EXPECT_EQ(made.size(), static_cast<size_t>(kClients * kRevisions));
    }
}

// Kills the server while its submit holds the writers' lock, inside the transaction (PostgreSQL shows it);
// false when the submit was over before it was seen.
bool killInsideTheTransaction(HexmoordProcess& server, const std::string& database, const std::atomic<bool>& finished) {
    PostgresCluster* cluster = SharedPostgresCluster();
    for (int tries = 0; tries < 2000 && !finished; ++tries) {
        if (cluster->queryValue(database, "SELECT count(*) FROM pg_locks WHERE locktype = 'advisory' AND granted") == "1") {
            server.kill();
            return true;
        }
    }
    server.kill();
    return false;
}

TEST_P(HexmoordUnderLoad, ASubmitCutByAKilledServerIsThereWholeOrNotAtAll) {
    constexpr int kDevices = 400;
    const json tree = seedProject(kDevices, 20);
    json changed = tree;
    for (json& device : changed["children"][0]["children"]) device["primary"][0]["count"] = "9";

    // The kill lands at different points of the submit; whichever, the outcome must be all or nothing.
    int expectedRevisions = 1;
    int killsInside = 0;
    for (const int delayMs : {0, 20, 80, 250}) {
        bool killedInside = false;
        {
            CHttpTransport http(server->endpoint());
            const std::string token = LoginToken(http, "acme", "ann");
            std::atomic<bool> finished = false;
            std::thread submit([&] {
                Request(http, "POST", "/api/submit-bom", {{"tree", changed}}, token);
                finished = true;
            });
            if (GetParam() == StoreKind::Postgres) {
                killedInside = killInsideTheTransaction(*server, database, finished);
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
                server->kill();
            }
            submit.join();
        }
        server = std::make_unique<HexmoordProcess>(database);
        std::set<size_t> counts;
        for (const auto& [id, revisions] : revisionsOf(tree)) counts.insert(revisions.size());
        ASSERT_EQ(counts.size(), 1u) << "some devices got the revision, others not";
        const size_t count = *counts.begin();
        EXPECT_TRUE(count == static_cast<size_t>(expectedRevisions) || count == static_cast<size_t>(expectedRevisions) + 1);
        // Killed while it held the writers' lock: the transaction never committed.
        if (killedInside) {
            EXPECT_EQ(count, static_cast<size_t>(expectedRevisions));
            ++killsInside;
        }
        expectedRevisions = static_cast<int>(count);
    }
    if (GetParam() == StoreKind::Postgres) {
        EXPECT_GT(killsInside, 0) << "no kill landed inside a submit's transaction";
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, HexmoordUnderLoad, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
