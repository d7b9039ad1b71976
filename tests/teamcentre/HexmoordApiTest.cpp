// hexmoord's JSON API as a client meets it, on both stores: sessions, the walls between enterprises, and
// bad requests that are refused while the server keeps serving.
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

using nlohmann::json;
using namespace team_test;

namespace {

class HexmoordApi : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override {
        const auto database = FreshDatabase(GetParam(), folder);
        if (!database) GTEST_SKIP() << kNoPostgresServer;
        server = std::make_unique<HexmoordProcess>(*database);
        http = std::make_unique<CHttpTransport>(server->endpoint());
    }

    // Submits a fresh project for the token's user; returns the tree the server sent back.
    json submitProject(const std::string& token, const CString& name, int devices) {
        const auto tree = project(name, devices);
        const JsonReply reply = Request(*http, "POST", "/api/submit-itm", {{"tree", TreeToJson(*tree)}}, token);
        EXPECT_EQ(reply.status, 200) << reply.body.dump();
        return reply.body["tree"];
    }

    TempFolder folder;
    std::unique_ptr<HexmoordProcess> server;
    std::unique_ptr<CHttpTransport> http;
};

TEST_P(HexmoordApi, LoginGivesARandomTokenThatEveryRequestMustCarry) {
    const std::string first = LoginToken(*http, "acme", "ann");
    const std::string second = LoginToken(*http, "acme", "ann");
    EXPECT_EQ(first.size(), 64u);
    EXPECT_NE(first, second);
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, first).status, 200);
    EXPECT_EQ(Request(*http, "GET", "/api/projects").status, 401);
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, std::string(64, '0')).status, 401);
    EXPECT_EQ(Request(*http, "GET", "/api/parts", nullptr, "not a token").status, 401);
    // The account exists now: another credential is refused, and gives no token.
    const JsonReply wrong = Request(*http, "POST", "/api/login", {{"enterprise", "acme"}, {"user", "ann"}, {"credential", "guess"}});
    EXPECT_EQ(wrong.status, 401);
    EXPECT_FALSE(wrong.body.contains("token"));
    // A logged-out token is refused.
    EXPECT_EQ(Request(*http, "POST", "/api/logout", nullptr, first).status, 200);
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, first).status, 401);
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, second).status, 200);
}

TEST_P(HexmoordApi, UsersOfOneEnterpriseShareItsProjectsAndNoOtherEnterpriseSeesThem) {
    const std::string ann = LoginToken(*http, "acme", "ann");
    const std::string bob = LoginToken(*http, "acme", "bob", "other");
    const std::string eve = LoginToken(*http, "rival", "eve");
    const json tree = submitProject(ann, u"华东变电站", 2);
    const std::string id = tree["id"].get<std::string>();
    const std::string device = tree["children"][0]["children"][0]["id"].get<std::string>();

    const JsonReply shared = Request(*http, "GET", "/api/projects/" + id + "/tree", nullptr, bob);
    ASSERT_EQ(shared.status, 200);
    EXPECT_EQ(shared.body["name"], "华东变电站");
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, bob).body.size(), 1u);

    // Whatever IDs eve names, the project is not there for her.
    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, eve).body, json::array());
    for (const std::string& path : std::vector<std::string>{"/api/projects/" + id + "/tree", "/api/projects/" + id + "/name", "/api/projects/" + id + "/rows",
                                    "/api/projects/" + id + "/rows?cabinet=" + device,
                                    "/api/projects/" + id + "/devices/" + device + "/revisions",
                                    "/api/projects/99999999999999999999/tree", "/api/projects/-1/tree", "/api/one-cabinet"})
        EXPECT_EQ(Request(*http, "GET", path, nullptr, eve).status, 404) << path;
    EXPECT_EQ(Request(*http, "POST", "/api/submit-bom", {{"tree", tree}}, eve).status, 404);
    EXPECT_EQ(Request(*http, "POST", "/api/compare", {{"tree", tree}}, eve).status, 404);
    // A lone device of ann's, sent by eve, is not taken.
    const JsonReply lone = Request(*http, "POST", "/api/submit-bom", {{"tree", tree["children"][0]["children"][0]}}, eve);
    ASSERT_EQ(lone.status, 400);  // a lone node without its device list is not a tree
    json device0 = tree["children"][0]["children"][0];
    device0["cabinets"] = json::array();
    const JsonReply alone = Request(*http, "POST", "/api/submit-bom", {{"tree", device0}}, eve);
    ASSERT_EQ(alone.status, 200);
    EXPECT_EQ(alone.body["report"]["accepted"], 0);
    EXPECT_EQ(alone.body["report"]["skipped"].size(), 1u);
    EXPECT_EQ(Request(*http, "GET", "/api/parts", nullptr, eve).body, json::array());

    // Ann's own device has only revision 1.
    const JsonReply revisions = Request(*http, "GET", "/api/projects/" + id + "/devices/" + device + "/revisions", nullptr, ann);
    ASSERT_EQ(revisions.status, 200);
    EXPECT_EQ(revisions.body.size(), 1u);
}

TEST_P(HexmoordApi, BadRequestsGetAClearRefusalAndTheServerKeepsServing) {
    const std::string token = LoginToken(*http, "acme", "ann");
    EXPECT_EQ(Request(*http, "POST", "/api/login", nullptr).status, 400);
    HttpReply malformed = http->request("POST", "/api/submit-bom", "{\"tree\": [", token);
    EXPECT_EQ(malformed.status, 400);
    EXPECT_NE(malformed.body.find("malformed JSON"), std::string::npos);
    EXPECT_EQ(Request(*http, "POST", "/api/submit-bom", {{"tree", {{"id", 5}}}}, token).status, 400);
    EXPECT_EQ(Request(*http, "POST", "/api/usage", {{"item", "i"}}, token).status, 400);
    json deep = json::object();
    for (int i = 0; i < 200; ++i) deep = {{"children", json::array({deep})}};
    EXPECT_EQ(Request(*http, "POST", "/api/compare", {{"tree", deep}}, token).status, 400);

    // 100 MB: refused before it is read.
    const HttpReply huge = http->request("POST", "/api/usage", std::string(100u << 20, ' '), token);
    EXPECT_TRUE(huge.status == 413 || huge.status == 0) << huge.status;
    // A path with "..", as sent (curl would fold it): raw over the transport.
    const HttpReply parent = http->request("GET", "/api/projects/../../etc/passwd", "", token);
    EXPECT_EQ(parent.status, 400);
    EXPECT_EQ(http->request("GET", "/api/nothing-here", "", token).status, 404);

    EXPECT_EQ(Request(*http, "GET", "/api/projects", nullptr, token).status, 200);
    submitProject(token, u"after", 1);
    const std::string log = server->output();
    EXPECT_NE(log.find("POST /api/submit-itm 200"), std::string::npos) << log;
    EXPECT_NE(log.find("GET /api/projects 200"), std::string::npos);
}

TEST_P(HexmoordApi, StopsCleanlyOnSigtermAndKeepsWhatWasSubmitted) {
    const std::string token = LoginToken(*http, "acme", "ann");
    submitProject(token, u"kept", 1);
    EXPECT_EQ(server->stop(), 0);
    EXPECT_NE(server->output().find("hexmoord: stopped"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Stores, HexmoordApi, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
