// hexmoord under the team's load: 8 clients that each submit 50 BOM revisions of the same project's three
// devices at once, over loopback. $QX_BENCH_CENTRE names the running server (scripts/centre prints it);
// each iteration is the whole load, and the rate counts submit requests per second.
#include "platform/cloud/http/CentreJson.h"
#include "platform/cloud/http/HttpTransport.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using nlohmann::json;

namespace {

constexpr int kClients = 8;
constexpr int kRevisions = 50;
constexpr int kDevices = 3;

std::string login(CHttpTransport& http, const std::string& user) {
    const json body{{"enterprise", "bench"}, {"user", user}, {"credential", "bench"}};
    const HttpReply reply = http.request("POST", "/api/login", body.dump(), "");
    const json answer = json::parse(reply.body, nullptr, false);
    return reply.status == 200 ? answer.value("token", "") : std::string();
}

HMProjectTree_INFO* addNode(HMProjectTree_INFO& parent, HMProjectTree_INFO& root, const char* name, const char16_t* type) {
    auto* node = new HMProjectTree_INFO;
    node->m_strName = CString(name);
    node->m_strType = type;
    node->m_pParent = &parent;
    node->m_pRoot = &root;
    parent.m_arrChildren.Add(node);
    if (HMIsDeviceType(type)) root.m_arrCabinets.Add(node);
    return node;
}

// The project every client submits to, as the server sent it back; null when the server is not there.
std::optional<json> seedProject(const std::string& endpoint) {
    CHttpTransport http(endpoint);
    const std::string token = login(http, "seed");
    if (token.empty()) return std::nullopt;
    HMProjectTree_INFO root;
    root.m_strName = u"load";
    HMProjectTree_INFO* lines = addNode(root, root, "lines", u"100");
    for (int d = 0; d < kDevices; ++d) addNode(*lines, root, ("AH" + std::to_string(d + 1)).c_str(), u"0");
    const HttpReply reply = http.request("POST", "/api/submit-itm", json{{"tree", TreeToJson(root)}}.dump(), token);
    if (reply.status != 200) return std::nullopt;
    return json::parse(reply.body)["tree"];
}

void teamLoad(benchmark::State& state) {
    const char* endpoint = std::getenv("QX_BENCH_CENTRE");
    if (!endpoint) {
        state.SkipWithError("no server: run scripts/centre and set QX_BENCH_CENTRE=http://127.0.0.1:PORT");
        return;
    }
    const auto tree = seedProject(endpoint);
    if (!tree) {
        state.SkipWithError("the server at QX_BENCH_CENTRE does not answer a login and a submit");
        return;
    }
    std::atomic<long> refused = 0;
    for (auto _ : state) {
        std::vector<std::thread> clients;
        for (int c = 0; c < kClients; ++c) {
            clients.emplace_back([&, c] {
                CHttpTransport http(endpoint);
                const std::string token = login(http, "user" + std::to_string(c));
                for (int r = 0; r < kRevisions; ++r) {
                    json mine = *tree;
                    for (json& device : mine["children"][0]["children"])
                        device["primary"] = json::array({{{"label", ""}, {"name", "load"}, {"model", std::to_string(c)},
                                                          {"count", std::to_string(r)}, {"remark", ""}, {"code", ""}}});
                    if (http.request("POST", "/api/submit-bom", json{{"tree", mine}}.dump(), token).status != 200) ++refused;
                }
            });
        }
        for (std::thread& client : clients) client.join();
    }
    if (refused > 0) state.SkipWithError("the server refused some submits");
    state.SetItemsProcessed(state.iterations() * kClients * kRevisions);
}

} // namespace

BENCHMARK(teamLoad)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

BENCHMARK_MAIN();
