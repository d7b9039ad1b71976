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

    static void fill(CHexmoorInteFace& client, const char16_t* credential) {
        client.m_strEnterprise = u"华东电气";
        client.m_strUser = u"ann";
        client.m_strCredential = credential;
    }

    TempFolder install;
    CapturedOutput output;
};

} // namespace

TEST_F(EmbeddedCentre, FirstLoginMakesTheAccountInAnOwnerOnlyStoreWithoutThePlainCredentialAndLaterOnesMustMatchIt) {
    {
        CHexmoorInteFace client;
        fill(client, u"plain-credential-text");
        EXPECT_EQ(client.autoLogin(), 1);
        EXPECT_TRUE(client.isLogin());
    }
    struct stat st;
    ASSERT_EQ(::stat((install.native() + "/LocalData/hexmoor.db").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(install.readFile("LocalData/hexmoor.db").find("plain-credential-text"), std::string::npos);

    CHexmoorInteFace client;
    fill(client, u"wrong");
    EXPECT_EQ(client.autoLogin(), -1);
    EXPECT_FALSE(client.isLogin());
    fill(client, u"plain-credential-text");
    EXPECT_EQ(client.autoLogin(), 1);
}

TEST_F(EmbeddedCentre, InteractiveLoginAsksWithoutEchoingTheCredential) {
    ScriptedPrompts prompts;
    prompts.answers = {u"acme", u"bob", u"pw"};
    CHexmoorInteFace client;
    EXPECT_EQ(client.Login(), 1);
    EXPECT_EQ(client.m_strEnterprise, CString(u"acme"));
    EXPECT_EQ(client.m_strUser, CString(u"bob"));
    ASSERT_EQ(prompts.secretQuestions.size(), 1u);
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

TEST_F(EmbeddedCentre, KeepsTheUsageFilesItReceivesOnlyWhenLoggedIn) {
    CHexmoorInteFace client;
    EXPECT_FALSE(client.UserInfoCollect(u"item", u"7", u"<a/>"));
    fill(client, u"pw");
    ASSERT_EQ(client.autoLogin(), 1);
    EXPECT_TRUE(client.UserInfoCollect(u"item", u"7", u"<用量/>"));
    EXPECT_NE(install.readFile("LocalData/hexmoor.db").find("<\xE7\x94\xA8\xE9\x87\x8F/>"), std::string::npos);
}

TEST_F(EmbeddedCentre, AStoreThatCannotBeOpenedRefusesTheLoginWithOneMessage) {
    install.writeFile("LocalData/hexmoor.db", "this is not a database at all, just text");
    CHexmoorInteFace client;
    fill(client, u"pw");
    EXPECT_EQ(client.autoLogin(), -1);
    EXPECT_EQ(client.autoLogin(), -1);
    const CString printed = output.printed;
    const int first = printed.Find(u"is damaged");
    EXPECT_GE(first, 0);
    EXPECT_EQ(printed.Find(u"is damaged", first + 1), -1);
}

namespace {

// A client logged in to the install's centre, with a project submitted.
class EmbeddedCentreWithProject : public EmbeddedCentre {
protected:
    EmbeddedCentreWithProject() {
        fill(client, u"pw");
        EXPECT_EQ(client.autoLogin(), 1);
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
    EXPECT_EQ(chosen->m_strName, u"第二站");
    EXPECT_EQ(chosen->m_arrCabinets.GetSize(), 3);
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
    EXPECT_TRUE(printed.Contains(u"Device AH1 进线柜 (ID")) << printed;
    EXPECT_TRUE(printed.Contains(u"1 differences from revision 1")) << printed;
    // Wide characters take two columns, so the model column lines up under its heading.
    const int heading = printed.Find(u"  change");
    const int line = printed.Find(u"  count changed");
    ASSERT_GE(heading, 0);
    ASSERT_GE(line, 0);
    const CString headingLine = printed.Mid(heading, printed.Find(u'\n', heading) - heading);
    const CString rowLine = printed.Mid(line, printed.Find(u'\n', line) - line);
    const auto column = [](const CString& text, int index) {
        int columns = 0;
        for (int i = 0; i < index; ++i) columns += text[i] >= 0x2E80 ? 2 : 1;
        return columns;
    };
    EXPECT_EQ(column(headingLine, headingLine.Find(u"model")), column(rowLine, rowLine.Find(u"LZZBJ9-10")));
    EXPECT_TRUE(rowLine.Contains(u" 3 ")) << rowLine;
    EXPECT_TRUE(rowLine.EndsWith(u"12")) << rowLine;
    EXPECT_TRUE(printed.Contains(u"BOM comparison: 3 devices, 1 differ from the centre."));
}

TEST_F(EmbeddedCentre, NothingButTheLoginWorksBeforeOne) {
    CHexmoorInteFace client;
    auto tree = centre_test::substation();
    EXPECT_FALSE(client.submitItm(tree.get()));
    EXPECT_EQ(client.getOneCabProjectInfo(), nullptr);
    BomRows rows;
    EXPECT_FALSE(client.getDqBoms(rows));
    EXPECT_TRUE(tree->m_strID.IsEmpty());
}
