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

class ClientOverHttp : public ServerOnEachStore {
protected:
    std::unique_ptr<CHexmoorInteFace> client(const CString& enterprise, const CString& user, const CString& credential = u"secret") {
        return ClientOf(server->endpoint(), enterprise, user, credential);
    }
    std::unique_ptr<CHexmoorInteFace> loggedIn(const CString& enterprise, const CString& user, const CString& credential = u"secret") {
        auto made = client(enterprise, user, credential);
        EXPECT_EQ(made->autoLogin(), 1) << output.printed.ToUtf8();
        return made;
    }

    CapturedOutput output;
};

TEST_P(ClientOverHttp, TwoUsersShareAProjectAThirdEnterpriseSeesNothingAndTheEndpointPicksTheBackend) {
    // Asked (the questions themselves are BomCentreTest's): an end of input cancels, answers log in.
    ScriptedPrompts prompts;
    auto ann = client(CString(), CString(), CString());
    EXPECT_EQ(ann->Login(), 0);
    prompts.answers = {u"acme", u"ann", u"secret"};
    EXPECT_EQ(ann->Login(), 1);
    EXPECT_EQ(client(u"acme", u"ann", u"guess")->autoLogin(), -1);
    auto bob = loggedIn(u"acme", u"bob", u"other");
    auto eve = loggedIn(u"rival", u"eve");

    auto tree = project(u"华东变电站", 2);
    ASSERT_TRUE(ann->submitItm(tree.get()));
    ASSERT_FALSE(tree->m_strID.IsEmpty());
    HMProjectTree_INFO* device = tree->m_arrCabinets[0];
    EXPECT_TRUE(!device->m_strID.IsEmpty() && device->m_bChanged && device->m_strBoms.Contains(u"Revision=\"1\""));
    EXPECT_EQ(bob->getProjectName(tree->m_strID), CString(u"华东变电站"));

    // Bob takes the project, changes a count and submits: revision 2, seen by ann's comparison.
    std::unique_ptr<HMProjectTree_INFO> bobs(bob->getProjectInfo(tree.get()));
    ASSERT_TRUE(bobs);
    EXPECT_EQ(shape(*bobs), "华东变电站: { 出线:100 { AH1:0 AH2:0 } } devices: AH1 AH2");
    bobs->m_arrCabinets[0]->m_arrPrimaryBom.Add({CString(), u"断路器", u"VS1-12/1250", u"4", u"带 <手车> & \"底座\"", u"QF-01"});
    ASSERT_TRUE(bob->submitBom(bobs.get(), true));
    EXPECT_TRUE(bobs->m_arrCabinets[0]->m_strBoms.Contains(u"Revision=\"2\""));
    output.printed = CString();
    ann->bomCmp(tree.get());
    EXPECT_TRUE(output.printed.Contains(u"断路器")) << output.printed.ToUtf8();

    BomRows rows;
    ASSERT_TRUE(ann->getImportBoms(tree->m_strID, bobs->m_arrCabinets[0]->m_strID, rows));
    ASSERT_EQ(rows.GetSize(), 1);
    EXPECT_EQ(rows[0], bobs->m_arrCabinets[0]->m_arrPrimaryBom[0]);
    ASSERT_TRUE(ann->getDqBoms(rows));
    EXPECT_EQ(rows.GetSize(), 1);

    // Eve: no name, no tree, no rows, no parts, and her submit of ann's tree is refused whole.
    EXPECT_TRUE(eve->getProjectName(tree->m_strID).IsEmpty());
    EXPECT_EQ(eve->getProjectInfo(tree.get()), nullptr);
    EXPECT_FALSE(eve->getImportBoms(tree->m_strID, CString(), rows));
    EXPECT_TRUE(eve->getDqBoms(rows) && rows.IsEmpty());
    EXPECT_FALSE(eve->submitBom(tree.get(), true));
    EXPECT_EQ(eve->getOneCabProjectInfo(), nullptr);
    // Every session ended on the server (lapsed): the next command logs in again once, silently, and works.
    CentreStoreOpener(database)()->removeSessionsUnusedSince(std::numeric_limits<long long>::max());
    output.printed = CString();
    std::unique_ptr<HMProjectTree_INFO> again(ann->getProjectInfo(tree.get()));
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->m_arrCabinets[0]->m_strBoms.Contains(u"Revision=\"2\""));
    EXPECT_TRUE(output.printed.IsEmpty()) << output.printed.ToUtf8();

    // The endpoint picks the backend at each login: a scripted cloud, this server, then neither once it stops.
    ScriptedCloud cloud;
    auto chooser = client(u"acme", u"ann");
    std::vector<int> scriptedLogins;
    for (const CString& endpoint : {CString(u"localhost:8585"), CString("HTTP://127.0.0.1:" + std::to_string(server->port()))}) {
        chooser->m_strServer = endpoint;
        EXPECT_EQ(chooser->autoLogin(), 1) << endpoint;
        scriptedLogins.push_back(cloud.script->autoLoginCalls);
    }
    server->stop();
    output.printed = CString();
    EXPECT_EQ(chooser->autoLogin(), -1);
    EXPECT_TRUE(output.printed.Contains(u"cannot be reached")) << output.printed.ToUtf8();
    chooser->m_strServer = u"localhost:8585";
    EXPECT_EQ(chooser->autoLogin(), 1);
    scriptedLogins.push_back(cloud.script->autoLoginCalls);
    EXPECT_EQ(scriptedLogins, (std::vector<int>{1, 1, 2}));
}

INSTANTIATE_TEST_SUITE_P(Stores, ClientOverHttp, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

} // namespace
