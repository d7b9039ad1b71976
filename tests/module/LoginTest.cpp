#include "ModuleFixture.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "module/CommandTable.h"
#include "module/commands/Commands.h"
#include "platform/cloud/embedded/BomCentre.h"
#include "platform/cloud/embedded/LoginToken.h"
#include "platform/host/Prompts.h"
#include "platform/params/ParameterLibrary.h"

#include <ctime>
#include <filesystem>
#include <stdexcept>

namespace {

struct LoginCase {
    const char* storedFile;  // the stored login on disk; null: none
    bool command;            // HMLogin rather than a cloud entry's guard
    int loginResult, autoLoginResult, loginCalls;
    bool loggedIn;
    const char16_t *autoLoginSaw, *printed, *storedAfter;  // what the silent login was given: enterprise·user·credential·server
};

class Login : public ModuleFixture, public ::testing::WithParamInterface<LoginCase> {};

} // namespace

TEST_P(Login, TakesTheSilentWayOnlyWithAStoredLoginAndSendsUsageOnlyAfterAnInteractiveOne) {
    const LoginCase& row = GetParam();
    if (row.storedFile) install.writeFile("LocalData/QxLoginInfo.dat", row.storedFile);
    install.writeFile("Part2lib/StructuralDrawing/QxCollect_1.xml", "<a/>");
    cloud().loginResult = row.loginResult;
    cloud().autoLoginResult = row.autoLoginResult;
    HMStartSession();
    EXPECT_EQ(row.command ? (HMLogin(), g_pHexmoorClient->isLogin()) : EnsureHMLogin(), row.loggedIn);
    EXPECT_EQ(cloud().loginCalls, row.loginCalls);
    CString saw, stored;
    for (const auto& login : cloud().autoLogins) saw += login.enterprise + u"·" + login.user + u"·" + login.credential + u"·" + login.server;
    EXPECT_EQ(saw, CString(row.autoLoginSaw));
    EXPECT_EQ(output.printed, CString(row.printed));
    QxGetCollectInfo_Varnholt_CV201301(2, stored);
    EXPECT_EQ(stored, CString(row.storedAfter));
    const bool sent = row.loginCalls > 0 && row.loggedIn;
    EXPECT_EQ(cloud().collected.size(), sent ? 1u : 0u);
    EXPECT_NE(install.exists("Part2lib/StructuralDrawing/QxCollect_1.xml"), sent);
    EXPECT_FALSE(g_bForceLogin);
    // Logged in, the guard asks nothing more; logged out, the next entry tries again.
    const int calls = cloud().loginCalls + cloud().autoLoginCalls;
    EXPECT_EQ(EnsureHMLogin(), row.loggedIn);
    EXPECT_EQ(cloud().loginCalls + cloud().autoLoginCalls, calls + (row.loggedIn ? 0 : 1));
}

INSTANTIATE_TEST_SUITE_P(Ways, Login, ::testing::Values(
    LoginCase{"ent·ann·pw·stored:8585", false, 1, 1, 0, true, u"ent·ann·pw·stored:8585", u"\n登录云端成功！", u"ent·ann·pw·stored:8585"},
    LoginCase{"ent·ann·pw·stored:8585", false, 1, -1, 0, false, u"ent·ann·pw·stored:8585", u"登录云端失败！", u"ent·ann·pw·stored:8585"},
    LoginCase{"ent·ann·pw·stored:8585", true, 1, 1, 1, true, u"", u"\n登录云端成功！", u"ent·user·secret·stored:8585"},
    LoginCase{"ent·ann·pw", false, 1, 1, 1, true, u"", u"\n登录云端成功！", u"ent·user·secret·localhost:8585"},
    LoginCase{nullptr, false, 0, 1, 1, false, u"", u"", u""},
    LoginCase{nullptr, true, -1, 1, 1, false, u"", u"登录云端失败！", u""}));

using UsageFiles = ModuleFixture;

TEST_F(UsageFiles, InteractiveLoginSendsTheUsageFilesItCanReadAndDeletesOnlyWhatTheCloudTook) {
    const std::string folder = "Part2lib/StructuralDrawing/", native = install.native() + "/" + folder;
    const std::vector<std::pair<std::string, std::string>> sent = {{"deep/QxCollect_a_QxCollect_b.xml", "<b/>"},
        {"QxCollect_.xml", "<e/>"}, {"QxCollect_7.XML", "<usage n=\"7\"/>"}, {"QxCollect_open.xml", "<a><b></a>"},
        {"QxCollect_gbk.xml", "<?xml version=\"1.0\" encoding=\"GB2312\"?><a>\xCF\xEE\xC4\xBF</a>"}};
    const std::vector<std::string> kept = {"xQxCollect_1.xml", "qxcollect_2.xml", "QxCollect_3.txt"};
    for (const auto& [name, text] : sent) install.writeFile(folder + name, text);
    for (const std::string& name : kept) install.writeFile(folder + name, "<z/>");
    // Root reads any mode, so the reads that fail here are links that lead nowhere or to themselves.
    std::filesystem::create_symlink(native + "no-such-file.xml", native + "QxCollect_gone.xml");
    std::filesystem::create_symlink(native + "QxCollect_loop.xml", native + "QxCollect_loop.xml");
    cloud().collectResult = false;
    HMStartSession();
    HMLogin();  // the cloud refuses them all: every file stays for the next login
    for (const auto& [name, text] : sent) EXPECT_TRUE(install.exists(folder + name)) << name;
    cloud().collectResult = true;
    HMLogin();

    CString keys;
    for (const auto& file : cloud().collected) keys += file.key + u"=" + file.text + u"\n";
    const CString once = u"a_b=<b/>\n=<e/>\n7=<usage n=\"7\"/>\ngbk=<?xml version=\"1.0\" encoding=\"GB2312\"?><a>项目</a>\nopen=<a><b></a>\n";
    EXPECT_EQ(keys, once + once);
    for (const auto& file : cloud().collected) EXPECT_EQ(file.item, cloud().collected[0].item);
    EXPECT_FALSE(cloud().collected[0].item.IsEmpty());
    for (const auto& [name, text] : sent) EXPECT_FALSE(install.exists(folder + name)) << name;
    for (const std::string& name : kept) EXPECT_TRUE(install.exists(folder + name)) << name;
    EXPECT_TRUE(std::filesystem::is_symlink(native + "QxCollect_gone.xml") && std::filesystem::is_symlink(native + "QxCollect_loop.xml"));
}

namespace {

// A host whose questions end in an exception, as a terminal that goes away would.
struct FailingPrompts final : IPromptService {
    FailingPrompts() { SetHostPrompts(this); }
    ~FailingPrompts() override { SetHostPrompts(nullptr); }
    std::optional<CString> AskText(const CString&) override { ++asked; throw std::runtime_error("the terminal is gone"); }
    std::optional<CString> AskSecret(const CString& question) override { return AskText(question); }
    std::optional<bool> AskYesNo(const CString&) override { return std::nullopt; }
    std::optional<int> AskChoice(const CString&, const CStringArray&) override { return std::nullopt; }
    int asked = 0;
};

// Straight in the store, as another tool would: the sessions stay, and the token must still not open the account.
void changeAccount(ICentreStore& store, const std::function<void(CentreAccount&)>& edit) {
    CentreAccount account = *store.account(u"ent", u"ann");
    edit(account);
    store.updateAccount(account);
}

// What a later silent login finds decides whether it opens the account, and whether it went by the token
// (kept) or by the credential (a new token).
struct TokenCase {
    const char* name;
    std::function<void(ICentreStore& store, const CString& token)> change;
    bool loggedIn, tokenKept;
    friend void PrintTo(const TokenCase& row, std::ostream* out) { *out << row.name; }
};

class EmbeddedLogin : public ModuleFixture, public ::testing::WithParamInterface<TokenCase> {
protected:
    // One module session's silent login with the embedded BOM centre; the token of the stored login after it.
    CString silentLogin(bool loggedIn) {
        HMStartSession();
        EXPECT_EQ(EnsureHMLogin(), loggedIn);
        HMEndSession();
        return StoredLoginToken(u"ent", u"ann", u"pw", u"stored:8585");
    }
};

} // namespace

TEST_P(EmbeddedLogin, ALaterSilentLoginGoesByTheTokenWhileItStillOpensTheSameAccount) {
    SetHexmoorBackendFactory({});
    HMStartSession();
    QxLSetLoginInfo_Varnholt_CV201301(u"ent", u"ann", u"pw", u"stored:8585");
    {
        FailingPrompts prompts;
        RunModuleCommand(u"HMLogin", HMLogin);
        EXPECT_TRUE(output.printed.Contains(u"HMLogin stopped on an unexpected error: the terminal is gone"));
        EXPECT_FALSE(g_bForceLogin);
        // The next cloud entry goes the silent way with the stored login: nobody is asked again.
        EXPECT_TRUE(EnsureHMLogin());
        EXPECT_EQ(prompts.asked, 1);
    }
    HMEndSession();
    const CString token = StoredLoginToken(u"ent", u"ann", u"pw", u"stored:8585");
    ASSERT_EQ(token.GetLength(), 64);
    EXPECT_EQ(silentLogin(true), token);  // a token that opens the account is no reason for a new one
    CSqliteCentreStore store(CEmbeddedBomCentre::StorePath());
    GetParam().change(store, token);
    const CString after = silentLogin(GetParam().loggedIn);
    EXPECT_EQ(after == token, GetParam().tokenKept);
    if (GetParam().loggedIn) { EXPECT_EQ(silentLogin(true), after) << "the new token opens the account"; }
}

INSTANTIATE_TEST_SUITE_P(Tokens, EmbeddedLogin, ::testing::Values(
    TokenCase{"Unchanged", [](ICentreStore&, const CString&) {}, true, true},
    TokenCase{"Tampered", [](ICentreStore&, const CString& token) {
        KeepLoginToken(u"ent", u"ann", u"pw", u"stored:8585", CString(token[0] == u'0' ? u"1" : u"0") + token.Mid(1)); }, true, false},
    TokenCase{"Lapsed", [](ICentreStore& store, const CString& token) {
        store.touchSession(LoginTokenHash(token, u"pw", store.account(u"ent", u"ann")->credentialHash),
                           std::time(nullptr) - CLoginTokens::kLifetimeSeconds - 1); }, true, false},
    TokenCase{"AccountDisabled", [](ICentreStore& store, const CString&) { changeAccount(store, [](auto& a) { a.disabled = true; }); },
              false, true},
    TokenCase{"CredentialChanged", [](ICentreStore& store, const CString&) {
        CBomCentreOperations(store).CheckAccount(u"ent", u"bob", u"new");  // an account whose hash is of "new"
        changeAccount(store, [&](auto& a) { a.credentialHash = store.account(u"ent", u"bob")->credentialHash; }); }, false, true},
    TokenCase{"StoredCredentialChanged", [](ICentreStore&, const CString& token) {
        QxLSetLoginInfo_Varnholt_CV201301(u"ent", u"ann", u"other", u"stored:8585");
        KeepLoginToken(u"ent", u"ann", u"other", u"stored:8585", token); }, false, false}),
    [](const auto& info) { return std::string(info.param.name); });
