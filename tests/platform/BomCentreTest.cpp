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

TEST_F(EmbeddedCentre, FirstLoginMakesTheAccountInAnOwnerOnlyStoreWithoutThePlainCredentialAndLaterOnesMustMatchIt) {
    {
        CHexmoorInteFace client;
        EXPECT_EQ(autoLogin(client, u"plain-credential-text"), 1);
        EXPECT_TRUE(client.isLogin());
    }
    struct stat st;
    ASSERT_EQ(::stat((install.native() + "/LocalData/hexmoor.db").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(install.readFile("LocalData/hexmoor.db").find("plain-credential-text"), std::string::npos);

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

TEST_F(EmbeddedCentre, NothingButTheLoginWorksBeforeOneAndUsageFilesAreKeptOnlyAfter) {
    CHexmoorInteFace client;
    auto tree = centre_test::substation();
    EXPECT_FALSE(client.submitItm(tree.get()));
    EXPECT_TRUE(tree->m_strID.IsEmpty());
    EXPECT_EQ(client.getOneCabProjectInfo(), nullptr);
    BomRows rows;
    EXPECT_FALSE(client.getDqBoms(rows));
    EXPECT_FALSE(client.UserInfoCollect(u"item", u"7", u"<a/>"));
    ASSERT_EQ(autoLogin(client, u"pw"), 1);
    EXPECT_TRUE(client.UserInfoCollect(u"item", u"7", u"<用量/>"));
    EXPECT_NE(install.readFile("LocalData/hexmoor.db").find("<\xE7\x94\xA8\xE9\x87\x8F/>"), std::string::npos);
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

namespace {

// A client logged in to the install's centre, with a project submitted.
class EmbeddedCentreWithProject : public EmbeddedCentre {
protected:
    EmbeddedCentreWithProject() {
        EXPECT_EQ(autoLogin(client, u"pw"), 1);
        EXPECT_TRUE(client.submitItm(project.get()));
    }

    CHexmoorInteFace client;
    std::unique_ptr<HMProjectTree_INFO> project = centre_test::substation();
};

} // namespace

TEST_F(EmbeddedCentreWithProject, ThePersonChoosesTheProjectFromANumberedList) {
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
}

TEST_F(EmbeddedCentreWithProject, RefusalsAndSkippedDevicesAreToldThroughTheHost) {
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
}

TEST_F(EmbeddedCentreWithProject, TheComparisonIsShownAsATablePerDevice) {
    project->m_arrCabinets[0]->m_arrPrimaryBom[1].m_strRowCount = u"12";
    client.bomCmp(project.get());
    const CString printed = output.printed;
    for (const char16_t* told : {u"Device AH1 进线柜 (ID", u"1 differences from revision 1", u"BOM comparison: 3 devices, 1 differ from the centre."})
        EXPECT_TRUE(printed.Contains(told)) << printed;
    // Wide characters take two columns, so the model column lines up under its heading.
    const auto lineOf = [&](const char16_t* text) {
        const int at = printed.Find(text);
        return at < 0 ? CString() : printed.Mid(at, printed.Find(u'\n', at) - at);
    };
    const auto column = [](const CString& text, const char16_t* word) {
        int columns = 0;
        for (int i = 0; i < text.Find(word); ++i) columns += text[i] >= 0x2E80 ? 2 : 1;
        return columns;
    };
    const CString heading = lineOf(u"  change");
    const CString row = lineOf(u"  count changed");
    EXPECT_EQ(column(heading, u"model"), column(row, u"LZZBJ9-10")) << printed;
    EXPECT_TRUE(row.Contains(u" 3 ") && row.EndsWith(u"12")) << row;
}
