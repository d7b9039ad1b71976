// hexmoord under load and under a crash: 8 clients submitting 50 revisions each of one project's devices at
// once keep every revision, numbered without gaps; a server killed in the middle of a submit leaves it
// whole or absent.
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <atomic>
#include <chrono>
#include <set>
#include <thread>

using nlohmann::json;
using namespace team_test;

namespace {

constexpr int kClients = 8;

class HexmoordUnderLoad : public ServerOnEachStore {
protected:
    std::vector<Account> accounts() const override {
        std::vector<Account> users{{"acme", "ann"}};
        for (int c = 0; c < kClients; ++c) users.push_back({"acme", "user" + std::to_string(c)});
        return users;
    }

    // Ann's project of `devices` devices as the server sent it back.
    json seedProject(int devices, int rowsPerDevice = 1) {
        auto tree = project(u"共用项目", devices);
        for (HMProjectTree_INFO* device : tree->m_arrCabinets)
            for (int r = 1; r < rowsPerDevice; ++r)
                device->m_arrPrimaryBom.Add({CString(), CString(("part " + std::to_string(r)).c_str()), u"M", u"1", CString(), CString()});
        return SubmittedTree(*http, LoginToken(*http, "acme", "ann"), *tree);
    }
};

TEST_P(HexmoordUnderLoad, EightClientsOfFiftyRevisionsEachLoseAndMergeNothing) {
    constexpr int kRevisions = 50;
    constexpr int kDevices = 3;
    const json tree = seedProject(kDevices);

    std::vector<std::thread> clients;
    std::vector<int> accepted(kClients, 0);
    for (int c = 0; c < kClients; ++c) {
        clients.emplace_back([&, c] {
            CHttpTransport own(server->endpoint());
            const std::string token = LoginToken(own, "acme", "user" + std::to_string(c));
            for (int r = 0; r < kRevisions; ++r) {
                const JsonReply reply = Request(own, "POST", "/api/submit-bom", {{"tree", WithLoadRow(tree, c, r)}}, token);
                if (reply.status == 200) accepted[c] += reply.body["report"]["accepted"].get<int>();
            }
        });
    }
    for (std::thread& client : clients) client.join();
    EXPECT_EQ(accepted, std::vector<int>(kClients, kRevisions * kDevices));

    // Every submit of every client once, on every device, and nothing else.
    std::map<std::pair<int, int>, int> everySubmitOnce;
    for (int c = 0; c < kClients; ++c)
        for (int r = 0; r < kRevisions; ++r) everySubmitOnce[{c, r}] = 1;
    const auto devices = LoadRevisions(*http, LoginToken(*http, "acme", "ann"), tree);
    ASSERT_EQ(devices.size(), static_cast<size_t>(kDevices));
    for (const auto& made : devices) EXPECT_TRUE(made == everySubmitOnce) << "a revision was lost, merged or came twice";
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
    const json tree = seedProject(400, 20);
    json changed = tree;
    for (json& device : changed["children"][0]["children"]) device["primary"][0]["count"] = "9";

    // The kill lands at different points of the submit; whichever, the outcome must be all or nothing.
    size_t expectedRevisions = 1;
    int killsInside = 0;
    for (const int delayMs : {0, 20, 80, 250}) {
        bool killedInside = false;
        const std::string token = LoginToken(*http, "acme", "ann");
        std::atomic<bool> finished = false;
        std::thread submit([&] {
            Request(*http, "POST", "/api/submit-bom", {{"tree", changed}}, token);
            finished = true;
        });
        if (GetParam() == StoreKind::Postgres) {
            killedInside = killInsideTheTransaction(*server, database, finished);
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
            server->kill();
        }
        submit.join();
        restart();
        std::set<size_t> counts;
        for (const auto& made : LoadRevisions(*http, LoginToken(*http, "acme", "ann"), tree)) {
            size_t revisions = 1;  // the first, and every later one however its rows look
            for (const auto& [submit, times] : made) revisions += static_cast<size_t>(times);
            counts.insert(revisions);
        }
        ASSERT_EQ(counts.size(), 1u) << "some devices got the revision, others not";
        const size_t count = *counts.begin();
        EXPECT_TRUE(count == expectedRevisions || count == expectedRevisions + 1);
        // Killed while it held the writers' lock: the transaction never committed.
        if (killedInside) {
            EXPECT_EQ(count, expectedRevisions);
            ++killsInside;
        }
        expectedRevisions = count;
    }
    if (GetParam() == StoreKind::Postgres) {
        EXPECT_GT(killsInside, 0) << "no kill landed inside a submit's transaction";
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, HexmoordUnderLoad, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
