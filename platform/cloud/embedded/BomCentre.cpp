// The embedded BOM centre: accounts, login and usage files.
#include "platform/cloud/embedded/BomCentre.h"

#include "platform/InstallPath.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/embedded/CredentialHash.h"
#include "platform/cloud/embedded/SqliteStore.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "support/FileSystem.h"

#include <chrono>
#include <cstdlib>
#include <ctime>

namespace {

const char* const kSchema = R"sql(
CREATE TABLE IF NOT EXISTS accounts (
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    credential_hash TEXT NOT NULL,
    created TEXT NOT NULL,
    PRIMARY KEY (enterprise, user));
CREATE TABLE IF NOT EXISTS usage_files (
    id INTEGER PRIMARY KEY,
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    item TEXT NOT NULL,
    key TEXT NOT NULL,
    text TEXT NOT NULL,
    received TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS projects (
    id TEXT PRIMARY KEY,
    enterprise TEXT NOT NULL,
    name TEXT NOT NULL);
)sql";

CString utcNow() {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    ::gmtime_r(&now, &tm);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return CString(buffer);
}

// Asks for one login item, offering what the client holds; an empty answer keeps it.
std::optional<CString> askWithDefault(const CString& question, const CString& current) {
    const CString shown = current.IsEmpty() ? question : question + u" [" + current + u"]";
    auto answer = HostPrompts().AskText(shown);
    if (!answer) return std::nullopt;
    answer->Trim();
    return answer->IsEmpty() ? current : *answer;
}

} // namespace

CEmbeddedBomCentre::CEmbeddedBomCentre() = default;
CEmbeddedBomCentre::~CEmbeddedBomCentre() = default;

std::string CEmbeddedBomCentre::StorePath() {
    if (const char* path = std::getenv("HEXMOOR_STORE"); path && *path) return path;
    const CString install = GetCorvaneLocalInstallPath();
    if (install.IsEmpty() || !QxFs::IsFolder(install)) return {};
    const CString folder = install + u"LocalData";
    if (!QxFs::MakeFolder(folder)) return {};
    const auto native = QxFs::NativeTarget(folder + u"\\hexmoor.db");
    return native ? *native : std::string();
}

SqliteStore* CEmbeddedBomCentre::store() {
    if (m_store || m_storeFailed) return m_store.get();
    const std::string path = StorePath();
    std::string error = "the install folder does not exist";
    if (!path.empty()) m_store = SqliteStore::Open(path, error);
    if (m_store && !m_store->execute(kSchema)) {
        error = "the file is not a BOM centre store";
        m_store.reset();
    }
    if (!m_store) {
        m_storeFailed = true;
        acutPrintf(u"\nHexmoor: the BOM centre store %s cannot be opened: %s\n", CString(path), CString(error));
    }
    return m_store.get();
}

int CEmbeddedBomCentre::checkAccount(const CString& enterprise, const CString& user, const CString& credential) {
    SqliteStore* db = store();
    if (!db) return -1;
    auto lookup = db->prepare("SELECT credential_hash FROM accounts WHERE enterprise = ?1 AND user = ?2");
    lookup.bind(1, enterprise).bind(2, user);
    if (lookup.step()) return VerifyCredential(lookup.text(0), credential) ? 1 : -1;

    const CString hash = HashCredential(credential);
    if (hash.IsEmpty()) return -1;
    auto insert = db->prepare("INSERT INTO accounts (enterprise, user, credential_hash, created) VALUES (?1, ?2, ?3, ?4)");
    insert.bind(1, enterprise).bind(2, user).bind(3, hash).bind(4, utcNow());
    return insert.run() ? 1 : -1;
}

int CEmbeddedBomCentre::Login(CHexmoorInteFace& client) {
    const auto enterprise = askWithDefault(u"Hexmoor enterprise", client.m_strEnterprise);
    if (!enterprise || enterprise->IsEmpty()) return 0;
    const auto user = askWithDefault(u"Hexmoor user", client.m_strUser);
    if (!user || user->IsEmpty()) return 0;
    const auto credential = HostPrompts().AskSecret(u"Hexmoor credential");
    if (!credential) return 0;

    client.m_strEnterprise = *enterprise;
    client.m_strUser = *user;
    client.m_strCredential = *credential;
    return autoLogin(client);
}

int CEmbeddedBomCentre::autoLogin(CHexmoorInteFace& client) {
    m_loggedIn = false;
    if (client.m_strEnterprise.IsEmpty() || client.m_strUser.IsEmpty()) return 0;
    if (client.m_strCredential.IsEmpty()) return -1;
    const int result = checkAccount(client.m_strEnterprise, client.m_strUser, client.m_strCredential);
    if (result < 1) return result;
    m_loggedIn = true;
    m_enterprise = client.m_strEnterprise;
    m_user = client.m_strUser;
    return 1;
}

bool CEmbeddedBomCentre::UserInfoCollect(const CString& item, const CString& key, const CString& text) {
    SqliteStore* db = store();
    if (!m_loggedIn || !db) return false;
    auto insert = db->prepare(
        "INSERT INTO usage_files (enterprise, user, item, key, text, received) VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
    insert.bind(1, m_enterprise).bind(2, m_user).bind(3, item).bind(4, key).bind(5, text).bind(6, utcNow());
    return insert.run();
}

CString CEmbeddedBomCentre::getProjectName(const CString& id) {
    SqliteStore* db = store();
    if (!m_loggedIn || !db) return CString();
    auto lookup = db->prepare("SELECT name FROM projects WHERE id = ?1 AND enterprise = ?2");
    lookup.bind(1, id).bind(2, m_enterprise);
    return lookup.step() ? lookup.text(0) : CString();
}

void CEmbeddedBomCentre::notYetAvailable(const char* operation) {
    acutPrintf(u"\nHexmoor: %s is not available in this build of the BOM centre.\n", CString(operation));
}

HMProjectTree_INFO* CEmbeddedBomCentre::getProjectInfo(HMProjectTree_INFO*) {
    notYetAvailable("getProjectInfo");
    return nullptr;
}

// No project holds cabinets in this build of the centre, so there is no cabinet tree to give.
HMProjectTree_INFO* CEmbeddedBomCentre::getOneCabProjectInfo() { return nullptr; }

bool CEmbeddedBomCentre::submitItm(HMProjectTree_INFO*) {
    notYetAvailable("submitItm");
    return false;
}

bool CEmbeddedBomCentre::submitBom(HMProjectTree_INFO*, bool) {
    notYetAvailable("submitBom");
    return false;
}

void CEmbeddedBomCentre::bomCmp(HMProjectTree_INFO*) { notYetAvailable("bomCmp"); }

bool CEmbeddedBomCentre::submitOneCabCir2(HMProjectTree_INFO*) {
    notYetAvailable("submitOneCabCir2");
    return false;
}

bool CEmbeddedBomCentre::getDqBoms(BomRows&) {
    notYetAvailable("getDqBoms");
    return false;
}

bool CEmbeddedBomCentre::getImportBoms(const CString&, const CString&, BomRows&) {
    notYetAvailable("getImportBoms");
    return false;
}
