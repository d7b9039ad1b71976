// hexmoord's JSON API as a client meets it, on both stores: accounts made by the administrator, sessions
// kept in the store, the walls between enterprises, throttled guessing, and bad requests that are refused
// (before their bodies are read where they can be) while the server keeps serving.
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/RawHttp.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <array>
#include <thread>
#include <tuple>
#include <sys/wait.h>

using nlohmann::json;
using namespace team_test;

namespace {

json credentials(const std::string& enterprise, const std::string& user, const std::string& credential) {
    return {{"enterprise", enterprise}, {"user", user}, {"credential", credential}};
}

class HexmoordApi : public ServerOnEachStore {};

// One server through the life of its accounts: logins and their tokens (whose own rules SessionTableTest
// checks), the administrator's commands, a restart, and a guesser throttled.
TEST_P(HexmoordApi, OnlyTheAdministratorsAccountsLogInTheirTokensOutliveARestartAndGuessesAreThrottled) {
    const std::string first = LoginToken(*http, "acme", "ann");
    const std::string second = LoginToken(*http, "acme", "ann");
    EXPECT_EQ(status("GET", "/api/projects", first), 200);
    for (const std::string& wrong : {std::string(), std::string(64, '0')})
        EXPECT_EQ(status("GET", "/api/parts", wrong), 401) << wrong;
    // A wrong credential, an unknown user or enterprise, another user's credential: no token.
    for (const auto& [enterprise, user, credential] : std::vector<std::array<std::string, 3>>{
             {"acme", "ann", "guess"}, {"acme", "mallory", "anything"}, {"acmf", "ann", "secret"}, {"acme", "bob", "secret"}}) {
        const JsonReply wrong = Request(*http, "POST", "/api/login", credentials(enterprise, user, credential));
        EXPECT_EQ(wrong.status, 401) << enterprise << "/" << user;
        EXPECT_FALSE(wrong.body.contains("token"));
    }
    EXPECT_EQ(status("POST", "/api/logout", first), 200);
    EXPECT_EQ(status("GET", "/api/projects", first), 401);

    // The administrator adds, rekeys and disables; each change ends the account's sessions.
    const std::string out = folder.native() + "/out.txt";
    const auto account = [&](const std::string& arguments, const std::string& input) {
        const std::string command = "printf '" + input + "' | " + HexmoordBinary() + " account " + arguments + " --db '" +
                                    database + "' > " + out + " 2>&1";
        const int result = std::system(command.c_str());
        return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
    };
    // Exists already, no credential given, no such account.
    EXPECT_EQ(account("add acme carl", "carls\n"), 0);
    EXPECT_EQ(account("add acme carl", "again\n") + account("add acme dora", "") + account("disable acme nobody", ""), 3);
    EXPECT_EQ(account("list", ""), 0);
    EXPECT_NE(ReadTextFile(out).find("acme/carl\t"), std::string::npos) << ReadTextFile(out);
    EXPECT_EQ(ReadTextFile(out).find("acme/dora"), std::string::npos);
    const std::string carl = LoginToken(*http, "acme", "carl", "carls");
    EXPECT_EQ(status("GET", "/api/projects", carl), 200);
    EXPECT_EQ(account("password acme carl", "newer\n"), 0);
    EXPECT_EQ(status("GET", "/api/projects", carl), 401);
    EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "carl", "carls")), 401);
    const std::string again = LoginToken(*http, "acme", "carl", "newer");
    EXPECT_EQ(account("disable acme carl", ""), 0);
    EXPECT_EQ(status("GET", "/api/projects", again), 401);
    EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "carl", "newer")), 401);
    EXPECT_EQ(account("list", ""), 0);
    EXPECT_NE(ReadTextFile(out).find("acme/carl\t"), std::string::npos);
    EXPECT_NE(ReadTextFile(out).find("disabled"), std::string::npos);

    // SIGTERM stops the server cleanly; sessions are kept in the store, so a restarted server knows them.
    EXPECT_EQ(server->stop(), 0);
    EXPECT_NE(server->output().find("hexmoord: stopped"), std::string::npos);
    restart();
    EXPECT_EQ(status("GET", "/api/projects", second), 200);
    EXPECT_EQ(status("GET", "/api/projects", first), 401);

    // Six wrong guesses make the account wait: even the right credential is not checked until the wait is over.
    for (int i = 0; i < 6; ++i) EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "ann", "guess")), 401) << i;
    EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "ann", "secret")), 429);
    EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "bob", "other")), 200);
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "ann", "secret")), 200);
    const std::string log = server->output();
    EXPECT_NE(log.find("login refused: wrong credential for acme/ann from 127.0.0.1, next try in 1 s"), std::string::npos) << log;
    EXPECT_NE(log.find("login throttled: acme/ann from 127.0.0.1 waits 1 s"), std::string::npos) << log;
}

TEST_P(HexmoordApi, UsersOfOneEnterpriseShareItsProjectsAndNoOtherEnterpriseSeesThem) {
    const std::string ann = LoginToken(*http, "acme", "ann");
    const std::string bob = LoginToken(*http, "acme", "bob", "other");
    const std::string eve = LoginToken(*http, "rival", "eve");
    const json tree = SubmittedTree(*http, ann, *project(u"华东变电站", 2));
    const std::string projectPath = "/api/projects/" + tree["id"].get<std::string>();
    const std::string device = tree["children"][0]["children"][0]["id"].get<std::string>();

    const JsonReply shared = Request(*http, "GET", projectPath + "/tree", nullptr, bob);
    EXPECT_EQ(shared.body["name"], "华东变电站");
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, bob).body.size(), 1u);

    // Whatever IDs eve names, the project is not there for her.
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, eve).body, json::array());
    for (const std::string& path : {projectPath + "/tree", projectPath + "/name", projectPath + "/rows", projectPath + "/rows?cabinet=" + device,
                                    projectPath + "/devices/" + device + "/revisions", std::string("/api/projects/99999999999999999999/tree"),
                                    std::string("/api/projects/9999999999999999999/tree"),
                                    std::string("/api/projects/-1/tree"), std::string("/api/one-cabinet")})
        EXPECT_EQ(status("GET", path, eve), 404) << path;
    EXPECT_EQ(status("POST", "/api/submit-bom", eve, {{"tree", tree}}), 404);
    EXPECT_EQ(status("POST", "/api/compare", eve, {{"tree", tree}}), 404);
    // A lone device of ann's, sent by eve, is not taken; without its device list it is not a tree at all.
    json lone = tree["children"][0]["children"][0];
    EXPECT_EQ(status("POST", "/api/submit-bom", eve, {{"tree", lone}}), 400);
    lone["cabinets"] = json::array();
    const JsonReply alone = Request(*http, "POST", "/api/submit-bom", {{"tree", lone}}, eve);
    EXPECT_EQ(alone.status, 200);
    EXPECT_EQ(alone.body["report"]["accepted"], 0);
    EXPECT_EQ(alone.body["report"]["skipped"].size(), 1u);
    EXPECT_EQ(Request(*http, "GET", "/api/parts", nullptr, eve).body, json::array());
    // Ann's own device has only revision 1.
    EXPECT_EQ(Request(*http, "GET", projectPath + "/devices/" + device + "/revisions", nullptr, ann).body.size(), 1u);
}

TEST_P(HexmoordApi, BadRequestsGetAClearRefusalEveryAnswerForbidsFramingAndTheServerKeepsServing) {
    const std::string token = LoginToken(*http, "acme", "ann");
    const auto named = project(u"a", 1);
    named->m_strName = CString(u"a\0b", 3);
    json deep = json::object();
    for (int i = 0; i < 200; ++i) deep = {{"children", json::array({deep})}};
    // NUL in any text is refused at the edge, and no empty enterprise sees anything.
    for (const auto& [what, path, body, expected] : std::vector<std::tuple<const char*, std::string, std::string, std::string>>{
             {"no body", "/api/login", "", "400"},
             {"a NUL in a login", "/api/login", R"({"enterprise": "\u0000", "user": "ann", "credential": "secret"})", "400"},
             {"a NUL in a key", "/api/submit-itm", R"({"tree": {"name\u0000": 1}})", "400"},
             {"a NUL in a name", "/api/submit-itm", json{{"tree", TreeToJson(*named)}}.dump(), "400"},
             {"malformed JSON", "/api/submit-bom", "{\"tree\": [", "400 malformed JSON"},
             {"a tree of the wrong shape", "/api/submit-bom", R"({"tree": {"id": 5}})", "400"},
             {"a usage file without its fields", "/api/usage", R"({"item": "i"})", "400"},
             {"a tree too deep", "/api/compare", json{{"tree", deep}}.dump(), "400"},
             {"brackets too deep", "/api/compare", std::string(1u << 20, '['), "400 nested deeper"}}) {
        const HttpReply reply = http->request("POST", path, body, what == std::string("no body") ? "" : token);
        // The status, and after it any words the refusal must hold.
        const size_t space = expected.find(' ');
        EXPECT_EQ(reply.status, std::stoi(expected)) << what;
        EXPECT_NE(reply.body.find(space == std::string::npos ? "" : expected.substr(space + 1)), std::string::npos) << what << ": " << reply.body;
    }
    EXPECT_EQ(http->request("GET", "/api/projects/1/rows?cabinet=%00", "", token).status, 400);

    // Each route's bound is judged from Content-Length, and answered before any of the body is sent; a body
    // without a valid token is not read at all.
    for (const auto& [path, length, bearer, expected] : std::vector<std::tuple<std::string, size_t, std::string, int>>{
             {"/api/login", 5000, "", 413}, {"/login", 5000, "", 413}, {"/api/usage", 2u << 20, token, 413},
             {"/api/submit-bom", 17u << 20, token, 413}, {"/api/submit-bom", 16u << 20, "", 401},
             {"/api/submit-bom", 16u << 20, std::string(64, 'a'), 401}, {"/api/projects", 10, token, 413}}) {
        RawConnection raw(server->port());
        const std::string method = path == "/api/projects" ? "GET " : "POST ";
        ASSERT_TRUE(raw.send(method + path + " HTTP/1.1\r\nHost: x\r\nContent-Length: " + std::to_string(length) +
                             (bearer.empty() ? "" : "\r\nAuthorization: Bearer " + bearer) + "\r\n\r\n"));
        bool closed = false;
        const std::string reply = raw.receive(std::chrono::seconds(5), &closed);
        EXPECT_TRUE(reply.starts_with("HTTP/1.1 " + std::to_string(expected))) << path << ": " << reply;
        EXPECT_TRUE(closed) << path;
    }
    // A path with "..", as sent (curl would fold it): raw over the transport.
    EXPECT_EQ(http->request("GET", "/api/projects/../../etc/passwd", "", token).status, 400);
    EXPECT_EQ(http->request("GET", "/api/nothing-here", "", token).status, 404);

    // Every answer, refusals too, forbids framing, sniffing and foreign content.
    for (const char* path : {"/", "/api/projects", "/style.css", "/nothing"}) {
        RawConnection raw(server->port());
        ASSERT_TRUE(raw.send(std::string("GET ") + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n"));
        const std::string reply = raw.receive(std::chrono::seconds(5));
        const std::string head = reply.substr(0, reply.find("\r\n\r\n"));
        for (const char* header : {"Content-Security-Policy: default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; "
                                   "frame-ancestors 'none'", "X-Frame-Options: DENY", "X-Content-Type-Options: nosniff"})
            EXPECT_NE(head.find(header), std::string::npos) << path << ": " << head;
    }
    EXPECT_EQ(status("GET", "/api/projects", token), 200);
    SubmittedTree(*http, token, *project(u"after", 1));
    // A line break in the path cannot forge a line of the log.
    const std::string forging = "/api/x%0a2026-01-01T00:00:00Z%20127.0.0.1%20GET%20/forged%20200%200";
    EXPECT_EQ(http->request("GET", forging, "", token).status, 404);
    const std::string log = server->output();
    EXPECT_NE(log.find("POST /api/submit-itm 200"), std::string::npos) << log;
    EXPECT_NE(log.find("GET /api/projects 200"), std::string::npos);
    EXPECT_NE(log.find("/api/x\\x0a2026-01-01T00:00:00Z\\x20127.0.0.1"), std::string::npos) << log;
    EXPECT_EQ(log.find("\n2026-01-01T00:00:00Z"), std::string::npos);
}

TEST_P(HexmoordApi, AHeaderThatTricklesInIsGivenUpWhileOthersAreServed) {
    restart({"--header-timeout", "2"});
    std::vector<std::unique_ptr<RawConnection>> slow;
    for (int i = 0; i < 12; ++i) {
        slow.push_back(std::make_unique<RawConnection>(server->port()));
        ASSERT_TRUE(slow.back()->send("GET /api/projects HTTP/1.1\r\n"));
    }
    const auto start = std::chrono::steady_clock::now();
    bool closed = false;
    // A byte a second keeps each single read short of the limit; the whole header is not.
    for (int second = 0; second < 8 && !closed; ++second) {
        for (auto& connection : slow) connection->send("X");
        EXPECT_EQ(status("POST", "/api/login", {}, credentials("acme", "ann", "secret")), 200);
        slow.front()->receive(std::chrono::milliseconds(1000), &closed);
    }
    EXPECT_TRUE(closed) << "the trickling header was never given up";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
}

// Behind a proxy that holds TLS the web view's cookie is Secure, but only a trusted proxy can say so; the
// address a trusted proxy forwards is the one the log names.
TEST(HexmoordBehindAProxy, OnlyATrustedProxyMakesTheCookieSecureAndNamesTheClient) {
    TempFolder folder;
    const std::string database = folder.native() + "/centre.db";
    AddAccounts(database, {{"acme", "ann"}});
    for (const bool trusted : {true, false}) {
        HexmoordProcess server(database, trusted ? std::vector<std::string>{"--trusted-proxy", "127.0.0.1"} : std::vector<std::string>{});
        RawConnection raw(server.port());
        const std::string form = "enterprise=acme&user=ann&credential=secret";
        ASSERT_TRUE(raw.send("POST /login HTTP/1.1\r\nHost: x\r\nConnection: close\r\nX-Forwarded-Proto: https\r\n"
                             "X-Forwarded-For: 10.1.2.3\r\nContent-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                             std::to_string(form.size()) + "\r\n\r\n" + form));
        const std::string reply = raw.receive(std::chrono::seconds(10));
        ASSERT_NE(reply.find("Set-Cookie: hexmoor_web="), std::string::npos) << reply;
        EXPECT_EQ(reply.find("SameSite=Strict; Secure") != std::string::npos, trusted) << reply;
        EXPECT_EQ(server.output().find("10.1.2.3 POST /login 303") != std::string::npos, trusted);
    }
}

// PostgreSQL restarted (its connections cut) or gone: dead pooled connections are replaced, and a failing
// database is a 503 that names neither its host nor its port.
TEST(HexmoordOnPostgres, DeadConnectionsAreReplacedAndAFailingDatabaseIsNotDescribed) {
    PostgresCluster* cluster = SharedPostgresCluster();
    if (!cluster) GTEST_SKIP() << kNoPostgresServer;
    const std::string database = cluster->freshDatabase();
    AddAccounts(database, {{"acme", "ann"}});
    HexmoordProcess server(database);
    CHttpTransport http(server.endpoint());
    const std::string token = LoginToken(http, "acme", "ann");
    std::vector<std::thread> parallel;
    // Several pooled connections, then every one of them cut.
    for (int i = 0; i < 4; ++i) parallel.emplace_back([&] { CHttpTransport own(server.endpoint()); Request(own, "GET", "/api/parts", nullptr, token); });
    for (std::thread& thread : parallel) thread.join();
    const std::string name = database.substr(database.find("dbname=") + 7);
    const std::string others = "SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity WHERE datname = '" + name + "' AND pid <> pg_backend_pid()";
    ASSERT_NE(cluster->queryValue(database, others), "");
    for (int i = 0; i < 6; ++i) EXPECT_EQ(Request(http, "GET", "/api/projects", nullptr, token).status, 200) << i;

    const std::string postgres = database.substr(0, database.find("dbname=")) + "dbname=postgres";
    ASSERT_TRUE(cluster->runSql(postgres, others + "; ALTER DATABASE " + name + " RENAME TO gone_" + name));
    const HttpReply failed = http.request("GET", "/api/projects", "", token);
    EXPECT_EQ(failed.status, 503);
    EXPECT_EQ(failed.body.find(std::to_string(cluster->port())), std::string::npos) << failed.body;
    EXPECT_EQ(failed.body.find("127.0.0.1"), std::string::npos) << failed.body;
    ASSERT_TRUE(cluster->runSql(postgres, "ALTER DATABASE gone_" + name + " RENAME TO " + name));
    EXPECT_EQ(Request(http, "GET", "/api/projects", nullptr, token).status, 200);
    EXPECT_NE(server.output().find("store failed: "), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Stores, HexmoordApi, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
