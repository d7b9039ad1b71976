// hexmoord under the team's load: 8 clients submitting BOM revisions of one project at once, over loopback.
// Small submits are 3 devices of 1 row; large ones 25 devices of 125 rows. $QX_BENCH_CENTRE names the
// running server (scripts/centre prints it) and $QX_BENCH_DB its database (scripts/centre prints that too),
// where the bench makes its accounts when they are missing. Every client logs in once, before any timing;
// each run makes projects of its own names, so the bench runs again and again against one server. The rate
// counts submit requests per second.
#include "centre/operations/CentreAccounts.h"
#include "centre/operations/CentreError.h"
#include "centre/server/StorePool.h"
#include "platform/cloud/http/CentreJson.h"
#include "platform/cloud/http/HttpTransport.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;

namespace {

constexpr int kClients = 8;
constexpr const char* kCredential = "bench-credential";

struct Client {
    std::unique_ptr<CHttpTransport> http;
    std::string token;
};

std::string userName(int client) { return "bench" + std::to_string(client); }

// The bench's accounts, made where missing.
bool ensureAccounts(const std::string& database) {
    try {
        const auto store = CentreStoreOpener(database)();
        CCentreAccounts accounts(*store);
        for (int c = 0; c < kClients; ++c) {
            try {
                accounts.Add(u"bench", CString(userName(c)), CString(kCredential));
            } catch (const CCentreStoreError&) {
                throw;
            } catch (const CCentreError&) {
                // It exists from an earlier run.
            }
        }
        return true;
    } catch (const CCentreError&) {
        return false;
    }
}

std::string login(CHttpTransport& http, const std::string& user) {
    const json body{{"enterprise", "bench"}, {"user", user}, {"credential", kCredential}};
    const HttpReply reply = http.request("POST", "/api/login", body.dump(), "");
    const json answer = json::parse(reply.body, nullptr, false);
    return reply.status == 200 && answer.is_object() ? answer.value("token", "") : std::string();
}

// Logged-in clients, made once for every benchmark of the run; empty when the server is not there.
std::vector<Client>& clients() {
    static std::vector<Client> made = [] {
        std::vector<Client> logged;
        const char* endpoint = std::getenv("QX_BENCH_CENTRE");
        const char* database = std::getenv("QX_BENCH_DB");
        if (!endpoint || !database || !ensureAccounts(database)) return logged;
        for (int c = 0; c < kClients; ++c) {
            Client client{std::make_unique<CHttpTransport>(endpoint), {}};
            client.token = login(*client.http, userName(c));
            if (client.token.empty()) return std::vector<Client>();
            logged.push_back(std::move(client));
        }
        return logged;
    }();
    return made;
}

HMProjectTree_INFO* addNode(HMProjectTree_INFO& parent, HMProjectTree_INFO& root, const std::string& name, const char16_t* type) {
    auto* node = new HMProjectTree_INFO;
    node->m_strName = CString(name);
    node->m_strType = type;
    node->m_pParent = &parent;
    node->m_pRoot = &root;
    parent.m_arrChildren.Add(node);
    if (HMIsDeviceType(type)) root.m_arrCabinets.Add(node);
    return node;
}

// A project of this run, as the server sent it back; a name of its own makes the bench rerunnable.
std::optional<json> seedProject(Client& client, int devices) {
    HMProjectTree_INFO root;
    root.m_strName = CString("load " + std::to_string(devices) + " " +
                             std::to_string(std::chrono::system_clock::now().time_since_epoch().count()));
    HMProjectTree_INFO* lines = addNode(root, root, "lines", u"100");
    for (int d = 0; d < devices; ++d) addNode(*lines, root, "AH" + std::to_string(d + 1), u"0");
    const HttpReply reply = client.http->request("POST", "/api/submit-itm", json{{"tree", TreeToJson(root)}}.dump(), client.token);
    if (reply.status != 200) return std::nullopt;
    return json::parse(reply.body)["tree"];
}

// Each client's request bodies, made before the timing: `submits` revisions of every device, `rows` rows each.
std::vector<std::vector<std::string>> requestBodies(const json& tree, int submits, int rows) {
    std::vector<std::vector<std::string>> bodies(kClients);
    for (int c = 0; c < kClients; ++c) {
        for (int s = 0; s < submits; ++s) {
            json mine = tree;
            for (json& device : mine["children"][0]["children"]) {
                json list = json::array();
                for (int r = 0; r < rows; ++r)
                    list.push_back({{"label", "L" + std::to_string(r)}, {"name", "part " + std::to_string(r)},
                                    {"model", "M" + std::to_string(c)}, {"count", std::to_string(s + 1)},
                                    {"remark", ""}, {"code", "C" + std::to_string(r)}});
                device["primary"] = std::move(list);
            }
            bodies[c].push_back(json{{"tree", mine}}.dump());
        }
    }
    return bodies;
}

void submitLoad(benchmark::State& state, int devices, int rows, int submitsPerClient) {
    std::vector<Client>& logged = clients();
    if (logged.empty()) {
        state.SkipWithError("no server: run scripts/centre, set QX_BENCH_CENTRE=http://127.0.0.1:PORT and QX_BENCH_DB to its --db");
        return;
    }
    const auto tree = seedProject(logged[0], devices);
    if (!tree) {
        state.SkipWithError("the server at QX_BENCH_CENTRE does not take a new project");
        return;
    }
    const auto bodies = requestBodies(*tree, submitsPerClient, rows);
    std::atomic<long> refused = 0;
    // Each submit carries a key of its own, as the client sends it; a key sent again would be answered
    // without writing.
    const std::string run = std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
    int round = 0;
    const auto start = std::chrono::steady_clock::now();
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int c = 0; c < kClients; ++c) {
            threads.emplace_back([&, c] {
                for (size_t s = 0; s < bodies[c].size(); ++s) {
                    const std::string& body = bodies[c][s];
                    const std::string key = run + "-" + std::to_string(round) + "-" + std::to_string(c) + "-" + std::to_string(s);
                    const std::string keyed = body.substr(0, body.size() - 1) + ",\"key\":\"" + key + "\"}";
                    if (logged[c].http->request("POST", "/api/submit-bom", keyed, logged[c].token).status != 200) ++refused;
                }
            });
        }
        for (std::thread& thread : threads) thread.join();
        ++round;
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (refused > 0) state.SkipWithError("the server refused some submits");
    state.SetItemsProcessed(state.iterations() * kClients * submitsPerClient);
    double load[1] = {0};
    ::getloadavg(load, 1);
    const double perSecond = static_cast<double>(state.iterations() * kClients * submitsPerClient) / seconds;
    std::printf("submits of %d devices of %d rows: %.1f per second with %d clients, load average %.1f\n", devices, rows,
                perSecond, kClients, load[0]);
}

void smallSubmits(benchmark::State& state) { submitLoad(state, 3, 1, 50); }
void largeSubmits(benchmark::State& state) { submitLoad(state, 25, 125, 5); }

} // namespace

BENCHMARK(smallSubmits)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(largeSubmits)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

BENCHMARK_MAIN();
