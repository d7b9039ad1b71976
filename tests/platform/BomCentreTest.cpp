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

TEST_F(EmbeddedCentre, FirstLoginMakesTheAccountAndLaterOnesMustMatchIt) {
    {
        CHexmoorInteFace client;
        fill(client, u"s3cret");
        EXPECT_EQ(client.autoLogin(), 1);
        EXPECT_TRUE(client.isLogin());
    }
    CHexmoorInteFace client;
    fill(client, u"wrong");
    EXPECT_EQ(client.autoLogin(), -1);
    EXPECT_FALSE(client.isLogin());
    fill(client, u"s3cret");
    EXPECT_EQ(client.autoLogin(), 1);
}

TEST_F(EmbeddedCentre, StoreIsReadableByItsOwnerOnlyAndHoldsNoPlainCredential) {
    CHexmoorInteFace client;
    fill(client, u"plain-credential-text");
    ASSERT_EQ(client.autoLogin(), 1);
    struct stat st;
    ASSERT_EQ(::stat((install.native() + "/LocalData/hexmoor.db").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    EXPECT_EQ(install.readFile("LocalData/hexmoor.db").find("plain-credential-text"), std::string::npos);
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
