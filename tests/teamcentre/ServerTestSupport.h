// What the hexmoord tests share: the databases they run on (a SQLite file, a PostgreSQL database of the
// throwaway cluster), the accounts an administrator makes, raw JSON requests, and logging in.
#pragma once

#include "common/PostgresCluster.h"
#include "common/TempFolder.h"
#include "centre/operations/CentreAccounts.h"
#include "centre/server/StorePool.h"
#include "platform/cloud/http/HttpTransport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
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

} // namespace team_test
