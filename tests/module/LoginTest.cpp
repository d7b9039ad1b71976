#include "ModuleFixture.h"
#include "module/CommandTable.h"
#include "module/Login.h"
#include "module/UsageFiles.h"
#include "module/commands/Commands.h"
#include "platform/host/Prompts.h"
#include "platform/params/ParameterLibrary.h"

#include <filesystem>
#include <stdexcept>

namespace {

class Login : public ModuleFixture {
protected:
    Login() { HMStartSession(); }

    void storeLogin() { QxLSetLoginInfo_Varnholt_CV201301(u"ent", u"ann", u"pw", u"stored:8585"); }
    CString storedRecord() {
        CString record;
        QxGetCollectInfo_Varnholt_CV201301(2, record);
        return record;
    }
};

} // namespace

TEST_F(Login, StoredLoginGoesTheSilentWayAndSendsNoUsageFile) {
    storeLogin();
    install.writeFile("Part2lib/StructuralDrawing/QxCollect_1.xml", "<a/>");
    EXPECT_TRUE(EnsureHMLogin());
    EXPECT_EQ(cloud().loginCalls, 0);
    ASSERT_EQ(cloud().autoLogins.size(), 1u);
    EXPECT_EQ(cloud().autoLogins[0].server, CString(u"stored:8585"));  // the stored endpoint wins
    EXPECT_EQ(cloud().autoLogins[0].credential, CString(u"pw"));
    EXPECT_TRUE(cloud().collected.empty());
    EXPECT_TRUE(install.exists("Part2lib/StructuralDrawing/QxCollect_1.xml"));
    EXPECT_EQ(output.printed, CString(u"\n登录云端成功！"));
    EXPECT_FALSE(g_bForceLogin);
    EXPECT_TRUE(EnsureHMLogin());
    EXPECT_EQ(cloud().autoLoginCalls, 1);  // logged in: the guard asks nothing more
}

TEST_F(Login, FailedSilentLoginStillHandsTheFieldsToTheParameterLibrary) {
    storeLogin();
    cloud().autoLoginResult = -1;
    EXPECT_FALSE(EnsureHMLogin());
    EXPECT_EQ(output.printed, CString(u"登录云端失败！"));
    EXPECT_EQ(storedRecord(), CString(u"ent·ann·pw·stored:8585"));
    EXPECT_FALSE(g_bForceLogin);
}

TEST_F(Login, HMLoginTakesTheInteractiveWayEvenWithAStoredLogin) {
    storeLogin();
    HMLogin();
    EXPECT_EQ(cloud().loginCalls, 1);
    EXPECT_EQ(cloud().autoLoginCalls, 0);
    EXPECT_EQ(storedRecord(), CString(u"ent·user·secret·stored:8585"));
    EXPECT_FALSE(g_bForceLogin);
}

TEST_F(Login, ShortStoredRecordCountsAsNone) {
    install.writeFile("LocalData/QxLoginInfo.dat", "ent·ann·pw");
    EnsureHMLogin();
    EXPECT_EQ(cloud().loginCalls, 1);
    EXPECT_EQ(cloud().autoLoginCalls, 0);
}

TEST_F(Login, CancelledOrRefusedInteractiveLoginKeepsNothing) {
    cloud().loginResult = 0;
    EXPECT_FALSE(EnsureHMLogin());
    EXPECT_TRUE(output.printed.IsEmpty());
    EXPECT_TRUE(storedRecord().IsEmpty());
    cloud().loginResult = -1;
    EXPECT_FALSE(EnsureHMLogin());
    EXPECT_EQ(output.printed, CString(u"登录云端失败！"));
    EXPECT_TRUE(storedRecord().IsEmpty());
    EXPECT_FALSE(g_bForceLogin);
}

TEST_F(Login, InteractiveLoginSendsUsageFilesAndDeletesOnlyWhatTheCloudTook) {
    const std::string folder = "Part2lib/StructuralDrawing/";
    install.writeFile(folder + "QxCollect_7.XML", "<usage n=\"7\"/>");
    install.writeFile(folder + "deep/QxCollect_a_QxCollect_b.xml", "<b/>");
    install.writeFile(folder + "xQxCollect_1.xml", "<x/>");
    install.writeFile(folder + "qxcollect_2.xml", "<y/>");
    install.writeFile(folder + "QxCollect_3.txt", "<z/>");
    HMLogin();

    // Listing order: the folder "deep" comes before "QxCollect_7.XML".
    ASSERT_EQ(cloud().collected.size(), 2u);
    EXPECT_EQ(cloud().collected[0].key, CString(u"a_b"));
    EXPECT_EQ(cloud().collected[1].key, CString(u"7"));
    EXPECT_EQ(cloud().collected[1].text, CString(u"<usage n=\"7\"/>"));
    EXPECT_FALSE(cloud().collected[1].item.IsEmpty());
    EXPECT_FALSE(install.exists(folder + "QxCollect_7.XML"));
    EXPECT_FALSE(install.exists(folder + "deep/QxCollect_a_QxCollect_b.xml"));
    EXPECT_TRUE(install.exists(folder + "xQxCollect_1.xml"));
    EXPECT_TRUE(install.exists(folder + "qxcollect_2.xml"));
    EXPECT_TRUE(install.exists(folder + "QxCollect_3.txt"));
}

TEST_F(Login, UsageFileRefusedByTheCloudStaysForTheNextLogin) {
    install.writeFile("Part2lib/StructuralDrawing/QxCollect_9.xml", "<a/>");
    cloud().collectResult = false;
    HMLogin();
    EXPECT_EQ(cloud().collected.size(), 1u);
    EXPECT_TRUE(install.exists("Part2lib/StructuralDrawing/QxCollect_9.xml"));
}

TEST(UsageFileKey, PrefixMustStandAtTheStartInThisExactCase) {
    EXPECT_EQ(UsageFileKey(u"QxCollect_7.XML"), CString(u"7"));
    EXPECT_EQ(UsageFileKey(u"QxCollect_.xml"), CString());
    EXPECT_EQ(UsageFileKey(u"xQxCollect_1.xml"), CString());
    EXPECT_EQ(UsageFileKey(u"QXCOLLECT_1.xml"), CString());
}

TEST_F(Login, UsageFileIsReadInTheEncodingItsDeclarationNamesAndSentEvenWhenMalformed) {
    const std::string folder = "Part2lib/StructuralDrawing/";
    install.writeFile(folder + "QxCollect_gbk.xml", "<?xml version=\"1.0\" encoding=\"GB2312\"?><a>\xCF\xEE\xC4\xBF</a>");
    install.writeFile(folder + "QxCollect_open.xml", "<a><b></a>");
    HMLogin();
    ASSERT_EQ(cloud().collected.size(), 2u);
    EXPECT_TRUE(cloud().collected[0].text.EndsWith(u"<a>项目</a>"));
    EXPECT_EQ(cloud().collected[1].text, CString(u"<a><b></a>"));
    EXPECT_FALSE(install.exists(folder + "QxCollect_open.xml"));
}

TEST_F(Login, UsageFilesWhoseBytesCannotBeReadAreNeitherSentNorDeleted) {
    // Root reads any mode, so the reads that fail here are links that lead nowhere or to themselves.
    const std::string folder = install.native() + "/Part2lib/StructuralDrawing/";
    install.writeFile("Part2lib/StructuralDrawing/QxCollect_ok.xml", "<ok/>");
    std::filesystem::create_symlink(folder + "no-such-file.xml", folder + "QxCollect_gone.xml");
    std::filesystem::create_symlink(folder + "QxCollect_loop.xml", folder + "QxCollect_loop.xml");
    HMLogin();

    ASSERT_EQ(cloud().collected.size(), 1u);
    EXPECT_EQ(cloud().collected[0].key, CString(u"ok"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder + "QxCollect_gone.xml"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder + "QxCollect_loop.xml"));
    EXPECT_FALSE(install.exists("Part2lib/StructuralDrawing/QxCollect_ok.xml"));
}

namespace {

// A host whose questions end in an exception, as a terminal that goes away would.
class FailingPrompts final : public IPromptService {
public:
    FailingPrompts() { SetHostPrompts(this); }
    ~FailingPrompts() override { SetHostPrompts(nullptr); }
    FailingPrompts(const FailingPrompts&) = delete;
    FailingPrompts& operator=(const FailingPrompts&) = delete;

    std::optional<CString> AskText(const CString&) override { return fail(); }
    std::optional<CString> AskSecret(const CString&) override { return fail(); }
    std::optional<bool> AskYesNo(const CString&) override { fail(); }
    std::optional<int> AskChoice(const CString&, const CStringArray&) override { fail(); }

    int asked = 0;

private:
    [[noreturn]] std::optional<CString> fail() {
        ++asked;
        throw std::runtime_error("the terminal is gone");
    }
};

} // namespace

using LoginFailure = ModuleFixture;

TEST_F(LoginFailure, AnExceptionInTheInteractiveLoginLowersTheForcedLogin) {
    SetHexmoorBackendFactory({});  // the embedded BOM centre, which asks through the host
    HMStartSession();
    QxLSetLoginInfo_Varnholt_CV201301(u"ent", u"ann", u"pw", u"stored:8585");
    FailingPrompts prompts;
    RunModuleCommand(u"HMLogin", HMLogin);
    EXPECT_EQ(prompts.asked, 1);
    EXPECT_TRUE(output.printed.Contains(u"HMLogin stopped on an unexpected error: the terminal is gone"));
    EXPECT_FALSE(g_bForceLogin);

    // The next cloud entry goes the silent way with the stored login: nobody is asked again.
    EXPECT_TRUE(EnsureHMLogin());
    EXPECT_EQ(prompts.asked, 1);
}
