// What the hexmoord tests share: the databases they run on (a SQLite file, a PostgreSQL database of the
// throwaway cluster), the accounts an administrator makes, raw JSON requests, and logging in.
#pragma once

#include "common/PostgresCluster.h"
#include "common/TempFolder.h"
#include "centre/operations/CentreAccounts.h"
#include "centre/server/StorePool.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/http/CentreJson.h"
#include "platform/cloud/http/HttpTransport.h"
#include "teamcentre/HexmoordProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <sstream>

namespace team_test {

enum class StoreKind { Sqlite, Postgres };

inline std::string StoreKindName(const ::testing::TestParamInfo<StoreKind>& info) {
    return info.param == StoreKind::Sqlite ? "Sqlite" : "Postgres";
}

// A fresh database of the kind; nullopt (the test skips) where PostgreSQL is not installed.
inline std::optional<std::string> FreshDatabase(StoreKind kind, const TempFolder& folder) {
    if (kind == StoreKind::Sqlite) return folder.native() + "/centre.db";
    PostgresCluster* cluster = SharedPostgresCluster();
    if (!cluster) return std::nullopt;
    return cluster->freshDatabase();
}

inline std::string ReadTextFile(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct Account {
    std::string enterprise;
    std::string user;
    std::string credential = "secret";
};

// Makes the accounts in the database, as `hexmoord account add` does.
inline void AddAccounts(const std::string& database, const std::vector<Account>& accounts) {
    const auto store = CentreStoreOpener(database)();
    for (const Account& account : accounts)
        CCentreAccounts(*store).Add(CString::FromUtf8(account.enterprise), CString::FromUtf8(account.user),
                                    CString::FromUtf8(account.credential));
}

struct JsonReply {
    long status = 0;
    nlohmann::json body;
};

inline JsonReply Request(CHttpTransport& http, const char* method, const std::string& path, const nlohmann::json& body = nullptr,
                         const std::string& token = {}) {
    const HttpReply reply = http.request(method, path, body.is_null() ? std::string() : body.dump(), token);
    return {reply.status, nlohmann::json::parse(reply.body, nullptr, false)};
}

inline std::string LoginToken(CHttpTransport& http, const std::string& enterprise, const std::string& user,
                              const std::string& credential = "secret") {
    const JsonReply reply =
        Request(http, "POST", "/api/login", {{"enterprise", enterprise}, {"user", user}, {"credential", credential}});
    EXPECT_EQ(reply.status, 200) << reply.body.dump();
    return reply.status == 200 ? reply.body["token"].get<std::string>() : std::string();
}

// The project as the server sent it back from its submit-itm.
inline nlohmann::json SubmittedTree(CHttpTransport& http, const std::string& token, const HMProjectTree_INFO& tree) {
    const JsonReply reply = Request(http, "POST", "/api/submit-itm", {{"tree", TreeToJson(tree)}}, token);
    EXPECT_EQ(reply.status, 200) << reply.body.dump();
    return reply.body["tree"];
}

// The module's cloud client pointed at the endpoint, with the person's answers filled in.
inline std::unique_ptr<CHexmoorInteFace> ClientOf(const std::string& endpoint, const CString& enterprise,
                                                  const CString& user, const CString& credential = u"secret") {
    auto client = std::make_unique<CHexmoorInteFace>();
    client->m_strServer = CString(endpoint);
    client->m_strEnterprise = enterprise;
    client->m_strUser = user;
    client->m_strCredential = credential;
    return client;
}

// hexmoord on a fresh database of each store kind, with the accounts the test names; the test skips where
// PostgreSQL is not installed.
class ServerOnEachStore : public ::testing::TestWithParam<StoreKind> {
protected:
    virtual std::vector<Account> accounts() const { return {{"acme", "ann"}, {"acme", "bob", "other"}, {"rival", "eve"}}; }

    void SetUp() override {
        const auto found = FreshDatabase(GetParam(), folder);
        if (!found) GTEST_SKIP() << kNoPostgresServer;
        database = *found;
        AddAccounts(database, accounts());
        restart();
    }
    void restart(const std::vector<std::string>& arguments = {}) {
        server.reset();
        server = std::make_unique<HexmoordProcess>(database, arguments);
        http = std::make_unique<CHttpTransport>(server->endpoint());
    }
    long status(const char* method, const std::string& path, const std::string& token = {}, const nlohmann::json& body = nullptr) {
        return Request(*http, method, path, body, token).status;
    }

    TempFolder folder;
    std::string database;
    std::unique_ptr<HexmoordProcess> server;
    std::unique_ptr<CHttpTransport> http;
};

// The tree with every device's rows replaced by one that names the client and its submit, so that a lost,
// merged or doubled revision shows.
inline nlohmann::json WithLoadRow(nlohmann::json tree, int client, int submit) {
    for (nlohmann::json& device : tree["children"][0]["children"])
        device["primary"] = nlohmann::json::array({{{"label", ""}, {"name", "load"}, {"model", std::to_string(client)},
                                                    {"count", std::to_string(submit)}, {"remark", ""}, {"code", ""}}});
    return tree;
}

// Each device's revisions of the project as the server lists them, checked to be numbered 1, 2, ... and made by
// the user their load row names; per device, how often each (client, submit) came.
inline std::vector<std::map<std::pair<int, int>, int>> LoadRevisions(CHttpTransport& http, const std::string& token,
                                                                     const nlohmann::json& tree) {
    std::vector<std::map<std::pair<int, int>, int>> devices;
    for (const nlohmann::json& device : tree["children"][0]["children"]) {
        const JsonReply revisions = Request(http, "GET", "/api/projects/" + tree["id"].get<std::string>() + "/devices/" +
                                                             device["id"].get<std::string>() + "/revisions", nullptr, token);
        EXPECT_EQ(revisions.status, 200);
        auto& made = devices.emplace_back();
        for (size_t i = 0; revisions.status == 200 && i < revisions.body.size(); ++i) {
            EXPECT_EQ(revisions.body[i]["number"], static_cast<int>(i) + 1) << "revision numbers have a gap";
            const nlohmann::json& rows = revisions.body[i]["rows"];
            if (i == 0) continue;
            if (rows.size() != 1 || rows[0]["name"] != "load") {
                ++made[{-1, -1}];  // a revision of no one's load row
                continue;
            }
            EXPECT_EQ(revisions.body[i]["user"], "user" + rows[0]["model"].get<std::string>());
            ++made[{std::stoi(rows[0]["model"].get<std::string>()), std::stoi(rows[0]["count"].get<std::string>())}];
        }
    }
    return devices;
}

} // namespace team_test
