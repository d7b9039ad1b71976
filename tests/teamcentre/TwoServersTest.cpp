// Two hexmoord on one PostgreSQL behind haproxy, as scripts/centre --servers 2 sets them up: 8 clients
// submit through the proxy while one server is killed. No acknowledged revision is lost or numbered twice,
// the numbers stay gapless, and the clients go on through the other server with the sessions they had.
#include "common/PostgresCluster.h"
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

using nlohmann::json;
using namespace team_test;

namespace {

// haproxy in the foreground on a free port, in front of the given servers; stopped when done.
class HaproxyProcess {
public:
    HaproxyProcess(const TempFolder& folder, const std::vector<int>& serverPorts) : m_port(FreeLoopbackPort()) {
        const std::string config = folder.native() + "/haproxy.cfg";
        std::ofstream out(config);
        out << "defaults\n mode http\n timeout connect 2s\n timeout client 60s\n timeout server 60s\n"
               " timeout http-request 5s\n option http-buffer-request\n option forwardfor\n retries 3\n option redispatch\n"
               "frontend centre\n bind 127.0.0.1:" << m_port << "\n default_backend hexmoord\n"
               "backend hexmoord\n balance roundrobin\n option httpchk GET /style.css\n";
        for (size_t i = 0; i < serverPorts.size(); ++i)
            out << " server s" << i << " 127.0.0.1:" << serverPorts[i] << " check inter 500ms fall 2 rise 1\n";
        out.close();
        m_pid = ::fork();
        if (m_pid == 0) {
            ::execl("/usr/sbin/haproxy", "haproxy", "-f", config.c_str(), "-db", "-q", static_cast<char*>(nullptr));
            ::_exit(127);
        }
        CHttpTransport probe(endpoint());
        for (int tries = 0; tries < 100 && probe.request("GET", "/style.css", "", "").status != 200; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    ~HaproxyProcess() {
        ::kill(m_pid, SIGTERM);
        ::waitpid(m_pid, nullptr, 0);
    }
    std::string endpoint() const { return "http://127.0.0.1:" + std::to_string(m_port); }

private:
    int m_port;
    int m_pid = 0;
};

TEST(TwoServersBehindAProxy, AServerKilledUnderLoadLosesNoAcknowledgedRevisionAndTheOtherGoesOn) {
    PostgresCluster* cluster = SharedPostgresCluster();
    if (!cluster) GTEST_SKIP() << kNoPostgresServer;
    if (!std::filesystem::exists("/usr/sbin/haproxy")) GTEST_SKIP() << "haproxy is not installed: the two-server setup is not tested";
    constexpr int kClients = 8;
    constexpr int kSubmits = 30;
    TempFolder folder;
    const std::string database = cluster->freshDatabase();
    std::vector<Account> accounts;
    for (int c = 0; c < kClients; ++c) accounts.push_back({"acme", "user" + std::to_string(c)});
    AddAccounts(database, accounts);
    auto first = std::make_unique<HexmoordProcess>(database, std::vector<std::string>{"--trusted-proxy", "127.0.0.1"});
    HexmoordProcess second(database, {"--trusted-proxy", "127.0.0.1"});
    HaproxyProcess proxy(folder, {first->port(), second.port()});

    CHttpTransport seeder(proxy.endpoint());
    const std::string seedToken = LoginToken(seeder, "acme", "user0");
    const json tree = SubmittedTree(seeder, seedToken, *project(u"共用", 2));

    std::atomic<int> acknowledgedBeforeKill = 0;
    std::atomic<bool> killed = false;
    std::vector<std::set<int>> acknowledged(kClients);
    std::vector<int> afterKill(kClients, 0);
    std::vector<std::thread> clients;
    for (int c = 0; c < kClients; ++c) {
        clients.emplace_back([&, c] {
            CHttpTransport http(proxy.endpoint());
            const std::string token = LoginToken(http, "acme", "user" + std::to_string(c));
            for (int r = 0; r < kSubmits; ++r) {
                // Halfway, a client waits for the kill, so that every one has submits left to make after it
                // however unevenly the clients were scheduled.
                while (r == kSubmits / 2 && !killed) std::this_thread::sleep_for(std::chrono::milliseconds(5));
                const bool wasKilled = killed;
                if (Request(http, "POST", "/api/submit-bom", {{"tree", WithLoadRow(tree, c, r)},
                                {"key", "client" + std::to_string(c) + "-submit-" + std::to_string(r)}}, token).status != 200) continue;
                acknowledged[c].insert(r);
                ++acknowledgedBeforeKill;
                if (wasKilled) ++afterKill[c];
            }
        });
    }
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (acknowledgedBeforeKill < kClients * kSubmits / 3 && std::chrono::steady_clock::now() < giveUp)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_GE(acknowledgedBeforeKill, kClients * kSubmits / 3) << "too few submits were answered before the kill";
    first->kill();
    killed = true;
    for (std::thread& client : clients) client.join();

    for (const auto& made : LoadRevisions(seeder, seedToken, tree)) {
        int twice = 0;
        for (const auto& [submit, times] : made) twice += times - 1;
        // A submit the dying server committed but could not answer is sent again with its key: kept once.
        EXPECT_EQ(twice, 0) << "revisions are there twice";
        for (int c = 0; c < kClients; ++c)
            for (const int r : acknowledged[c]) EXPECT_TRUE(made.contains({c, r})) << "client " << c << " lost submit " << r;
    }
    for (int c = 0; c < kClients; ++c) EXPECT_GT(afterKill[c], 0) << "client " << c << " did not go on through the other server";
}

} // namespace
