#include "CentreTestSupport.h"
#include "common/CapturedOutput.h"
#include "common/ScriptedPrompts.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/embedded/BomCentre.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class EmbeddedCentre : public ::testing::Test {
protected:
    EmbeddedCentre() { SetCorvaneInstallDirOverride(install.logic()); }
    ~EmbeddedCentre() override { SetCorvaneInstallDirOverride(CString()); }

    // The client's answer to a login as ann of 华东电气 with the credential.
    static int autoLogin(CHexmoorInteFace& client, const char16_t* credential) {
        client.m_strEnterprise = u"华东电气";
        client.m_strUser = u"ann";
        client.m_strCredential = credential;
        return client.autoLogin();
    }

    TempFolder install;
    CapturedOutput output;
};

} // namespace

TEST_F(EmbeddedCentre, NothingButTheLoginWorksBeforeOneWhichMakesTheAccountInAnOwnerOnlyStoreThatLaterOnesMustMatch) {
    {
        CHexmoorInteFace client;
        auto tree = centre_test::substation();
        EXPECT_FALSE(client.submitItm(tree.get()));
        EXPECT_TRUE(tree->m_strID.IsEmpty());
        EXPECT_EQ(client.getOneCabProjectInfo(), nullptr);
        BomRows rows;
        EXPECT_FALSE(client.getDqBoms(rows));
        EXPECT_FALSE(client.UserInfoCollect(u"item", u"7", u"<a/>"));
        EXPECT_EQ(autoLogin(client, u"plain-credential-text"), 1);
        EXPECT_TRUE(client.isLogin());
        EXPECT_TRUE(client.UserInfoCollect(u"item", u"7", u"<用量/>"));
    }
    struct stat st;
    ASSERT_EQ(::stat((install.native() + "/LocalData/hexmoor.db").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    const std::string kept = install.readFile("LocalData/hexmoor.db");
    EXPECT_EQ(kept.find("plain-credential-text"), std::string::npos);
    EXPECT_NE(kept.find("<\xE7\x94\xA8\xE9\x87\x8F/>"), std::string::npos);

    CHexmoorInteFace client;
    EXPECT_EQ(autoLogin(client, u"wrong"), -1);
    EXPECT_FALSE(client.isLogin());
    EXPECT_EQ(autoLogin(client, u"plain-credential-text"), 1);
}

TEST_F(EmbeddedCentre, InteractiveLoginAsksWithoutEchoingTheCredential) {
    ScriptedPrompts prompts;
    prompts.answers = {u"acme", u"bob", u"pw"};
    CHexmoorInteFace client;
    EXPECT_EQ(client.Login(), 1);
    EXPECT_EQ(std::make_pair(client.m_strEnterprise, client.m_strUser), std::make_pair(CString(u"acme"), CString(u"bob")));
    EXPECT_EQ(prompts.secretQuestions.size(), 1u);
    EXPECT_TRUE(output.printed.IsEmpty());

    // An empty answer keeps what the client held; an end of input cancels with 0.
    prompts.answers = {u"", u"", u"pw"};
    EXPECT_EQ(client.Login(), 1);
    EXPECT_EQ(client.m_strEnterprise, CString(u"acme"));
    CHexmoorInteFace fresh;
    prompts.answers = {u"acme"};
    EXPECT_EQ(fresh.Login(), 0);
    EXPECT_FALSE(fresh.isLogin());
}

TEST_F(EmbeddedCentre, AStoreThatCannotBeOpenedRefusesTheLoginWithOneMessage) {
    install.writeFile("LocalData/hexmoor.db", "this is not a database at all, just text");
    CHexmoorInteFace client;
    EXPECT_EQ(autoLogin(client, u"pw"), -1);
    EXPECT_EQ(client.autoLogin(), -1);
    const int first = output.printed.Find(u"is damaged");
    EXPECT_GE(first, 0);
    EXPECT_EQ(output.printed.Find(u"is damaged", first + 1), -1);
}

TEST_F(EmbeddedCentre, ThePersonChoosesFromANumberedListAndRefusalsAndComparisonsAreTold) {
    CHexmoorInteFace client;
    ASSERT_EQ(autoLogin(client, u"pw"), 1);
    auto project = centre_test::substation();
    ASSERT_TRUE(client.submitItm(project.get()));
    auto second = centre_test::substation(u"第二站");
    ASSERT_TRUE(client.submitItm(second.get()));
    ScriptedPrompts prompts;
    prompts.answers = {u"1"};
    HMProjectTree_INFO* chosen = client.getProjectInfo(nullptr);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(centre_test::shape(*chosen), "第二站: { AH1 进线柜:0 出线:100 { AH2:0 AH4:0 } } devices: AH1 进线柜 AH2 AH4");
    client.freeTreeInfo(chosen);

    // A cancelled choice gives nothing; a local tree gives the cloud's tree of its root ID.
    EXPECT_EQ(client.getProjectInfo(nullptr), nullptr);
    HMProjectTree_INFO* cloud = client.getProjectInfo(project.get());
    ASSERT_TRUE(cloud);
    EXPECT_EQ(cloud->m_strID, project->m_strID);
    client.freeTreeInfo(cloud);
    HMProjectTree_INFO unknown;
    unknown.m_strID = u"404";
    EXPECT_EQ(client.getProjectInfo(&unknown), nullptr);
    EXPECT_TRUE(output.printed.Contains(u"no project of the ID \"404\""));

    // Refusals and skipped devices are told through the host.
    auto again = centre_test::substation();
    EXPECT_FALSE(client.submitItm(again.get()));
    EXPECT_TRUE(output.printed.Contains(u"already has a project named \"华东变电站\""));

    project->m_arrCabinets[1]->m_strID = CString();
    EXPECT_FALSE(client.submitBom(project.get(), false));
    EXPECT_TRUE(output.printed.Contains(u"submitBom did not take AH2"));
    EXPECT_TRUE(project->m_arrCabinets[0]->m_bChanged);

    BomRows rows;
    EXPECT_TRUE(client.getImportBoms(project->m_strID, project->m_arrCabinets[0]->m_strID, rows));
    EXPECT_EQ(rows.GetSize(), 3);
    EXPECT_TRUE(client.getDqBoms(rows));
    EXPECT_EQ(rows.GetSize(), 4);
    EXPECT_EQ(client.getProjectName(project->m_strID), project->m_strName);

    // The comparison's table is FormatComparison's (CentreOperationsTest); the host shows it.
    client.bomCmp(project.get());
    EXPECT_TRUE(output.printed.Contains(u"BOM comparison: 3 devices, 1 differ from the centre.")) << output.printed;
}
