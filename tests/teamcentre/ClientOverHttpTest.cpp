// The cloud client as the module uses it, pointed at hexmoord by an http:// endpoint: two users of one
// enterprise work on one project, a third enterprise sees nothing of it, and the endpoint picks the backend
// at each login.
#include "common/CapturedOutput.h"
#include "common/ScriptedBackend.h"
#include "common/ScriptedPrompts.h"
#include "platform/cloud/HexmoorClient.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <limits>

using namespace team_test;

namespace {

class ClientOverHttp : public ::testing::TestWithParam<StoreKind> {
protected:
    void SetUp() override {
        const auto database = FreshDatabase(GetParam(), folder);
        if (!database) GTEST_SKIP() << kNoPostgresServer;
        this->database = *database;
        AddAccounts(*database, {{"acme", "ann"}, {"acme", "bob", "bobs"}, {"rival", "eve"}});
        server = std::make_unique<HexmoordProcess>(*database);
    }

    std::unique_ptr<CHexmoorInteFace> loggedIn(const CString& enterprise, const CString& user, const CString& credential = u"secret") {
        auto client = std::make_unique<CHexmoorInteFace>();
        client->m_strServer = CString(server->endpoint());
        client->m_strEnterprise = enterprise;
        client->m_strUser = user;
        client->m_strCredential = credential;
        EXPECT_EQ(client->autoLogin(), 1) << output.printed.ToUtf8();
        return client;
    }

    TempFolder folder;
    std::string database;
    CapturedOutput output;
    std::unique_ptr<HexmoordProcess> server;
};

TEST_P(ClientOverHttp, TwoUsersShareAProjectAndAThirdEnterpriseSeesNothing) {
    auto ann = loggedIn(u"acme", u"ann");
    auto bob = loggedIn(u"acme", u"bob", u"bobs");
    auto eve = loggedIn(u"rival", u"eve");

    auto tree = project(u"华东变电站", 2);
    ASSERT_TRUE(ann->submitItm(tree.get()));
    ASSERT_FALSE(tree->m_strID.IsEmpty());
    HMProjectTree_INFO* device = tree->m_arrCabinets[0];
    EXPECT_FALSE(device->m_strID.IsEmpty());
    EXPECT_TRUE(device->m_bChanged);
    EXPECT_NE(device->m_strBoms.Find(u"Revision=\"1\""), -1);
    EXPECT_EQ(bob->getProjectName(tree->m_strID), CString(u"华东变电站"));

    // Bob takes the project, changes a count and submits: revision 2, seen by ann's comparison.
    std::unique_ptr<HMProjectTree_INFO> bobs(bob->getProjectInfo(tree.get()));
    ASSERT_TRUE(bobs);
    ASSERT_EQ(bobs->m_arrCabinets.GetSize(), 2);
    bobs->m_arrCabinets[0]->m_arrPrimaryBom.Add({CString(), u"断路器", u"VS1-12/1250", u"4", u"带 <手车> & \"底座\"", u"QF-01"});
    ASSERT_TRUE(bob->submitBom(bobs.get(), true));
    EXPECT_NE(bobs->m_arrCabinets[0]->m_strBoms.Find(u"Revision=\"2\""), -1);
    output.printed = CString();
    ann->bomCmp(tree.get());
    EXPECT_NE(output.printed.Find(u"断路器"), -1) << output.printed.ToUtf8();

    BomRows rows;
    ASSERT_TRUE(ann->getImportBoms(tree->m_strID, bobs->m_arrCabinets[0]->m_strID, rows));
    ASSERT_EQ(rows.GetSize(), 1);
    EXPECT_EQ(rows[0].m_strRowCount, CString(u"4"));
    EXPECT_EQ(rows[0].m_strRowRemark, CString(u"带 <手车> & \"底座\""));
    ASSERT_TRUE(ann->getDqBoms(rows));
    EXPECT_EQ(rows.GetSize(), 1);

    // Eve: no name, no tree, no rows, no parts, and her submit of ann's tree is refused whole.
    EXPECT_TRUE(eve->getProjectName(tree->m_strID).IsEmpty());
    EXPECT_EQ(eve->getProjectInfo(tree.get()), nullptr);
    EXPECT_FALSE(eve->getImportBoms(tree->m_strID, CString(), rows));
    EXPECT_TRUE(eve->getDqBoms(rows));
    EXPECT_EQ(rows.GetSize(), 0);
    EXPECT_FALSE(eve->submitBom(tree.get(), true));
    EXPECT_EQ(eve->getOneCabProjectInfo(), nullptr);
    // Every session ended on the server (lapsed): the next command logs in again once, silently, and works.
    CentreStoreOpener(database)()->removeSessionsUnusedSince(std::numeric_limits<long long>::max());
    output.printed = CString();
    std::unique_ptr<HMProjectTree_INFO> again(ann->getProjectInfo(tree.get()));
    ASSERT_TRUE(again);
    EXPECT_NE(again->m_arrCabinets[0]->m_strBoms.Find(u"Revision=\"2\""), -1);
    EXPECT_TRUE(output.printed.IsEmpty()) << output.printed.ToUtf8();
}

TEST_P(ClientOverHttp, InteractiveLoginAsksAndAWrongCredentialIsRefused) {
    loggedIn(u"acme", u"ann");
    ScriptedPrompts prompts;
    CHexmoorInteFace client;
    client.m_strServer = CString(server->endpoint());
    prompts.answers = {u"acme", u"ann", u"guess"};
    EXPECT_EQ(client.Login(), -1);
    EXPECT_FALSE(client.isLogin());
    EXPECT_EQ(prompts.secretQuestions.size(), 1u);
    prompts.answers = {u"acme", u"ann", u"secret"};
    EXPECT_EQ(client.Login(), 1);
    EXPECT_TRUE(client.isLogin());
    EXPECT_TRUE(client.UserInfoCollect(u"item", u"QxCollect_1.xml", u"<usage/>"));
    prompts.answers = {};
    EXPECT_EQ(client.Login(), 0);
}

TEST_P(ClientOverHttp, TheEndpointChoosesTheBackendAtEachLogin) {
    ScriptedCloud cloud;
    CHexmoorInteFace client;
    client.m_strEnterprise = u"acme";
    client.m_strUser = u"ann";
    client.m_strCredential = u"secret";
    client.m_strServer = u"localhost:8585";
    EXPECT_EQ(client.autoLogin(), 1);
    EXPECT_EQ(cloud.script->autoLoginCalls, 1);
    client.m_strServer = CString("HTTP://127.0.0.1:" + std::to_string(server->port()));
    EXPECT_EQ(client.autoLogin(), 1);
    EXPECT_EQ(cloud.script->autoLoginCalls, 1);
    server->stop();
    output.printed = CString();
    EXPECT_EQ(client.autoLogin(), -1);
    EXPECT_NE(output.printed.Find(u"cannot be reached"), -1) << output.printed.ToUtf8();
    client.m_strServer = u"localhost:8585";
    EXPECT_EQ(client.autoLogin(), 1);
    EXPECT_EQ(cloud.script->autoLoginCalls, 2);
}

INSTANTIATE_TEST_SUITE_P(Stores, ClientOverHttp, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
