// The embedded BOM centre: the session and the person around the centre's operations.
#include "platform/cloud/embedded/BomCentre.h"

#include "platform/InstallPath.h"
#include "platform/cloud/CentrePerson.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/embedded/LoginToken.h"
#include "platform/params/ParameterLibrary.h"
#include "centre/operations/CentreError.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "project/NodeNames.h"
#include "support/FileSystem.h"

#include <cstdlib>

CEmbeddedBomCentre::CEmbeddedBomCentre()
    : m_opener([]() -> std::unique_ptr<ICentreStore> {
          const std::string path = StorePath();
          if (path.empty()) throw CCentreStoreError(u"The BOM centre store cannot be opened: the install folder does not exist.");
          return std::make_unique<CSqliteCentreStore>(path);
      }) {}

CEmbeddedBomCentre::CEmbeddedBomCentre(StoreOpener opener) : m_opener(std::move(opener)) {}

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

CBomCentreOperations* CEmbeddedBomCentre::operations() {
    if (m_operations || m_storeFailed) return m_operations.get();
    try {
        m_store = m_opener();
        m_operations = std::make_unique<CBomCentreOperations>(*m_store);
    } catch (const CCentreStoreError& error) {
        // A store held by another process may be free at the next try; any other failure stays.
        m_storeFailed = !error.locked();
        TellCentreMessage(error.message());
    }
    return m_operations.get();
}

template <typename Result, typename Work>
Result CEmbeddedBomCentre::guarded(Result failed, Work&& work) {
    if (!m_loggedIn) return failed;
    CBomCentreOperations* centre = operations();
    if (!centre) return failed;
    try {
        return work(*centre);
    } catch (const CCentreError& error) {
        TellCentreMessage(error.message());
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre failed: %s.", CString(error.what())));
    }
    return failed;
}

int CEmbeddedBomCentre::Login(CHexmoorInteFace& client) {
    return AskCentreLogin(client) ? autoLogin(client) : 0;
}

// Without a token the next login checks the credential again, so a store that cannot keep one now is no failure.
void CEmbeddedBomCentre::keepToken(CLoginTokens& tokens, const CHexmoorInteFace& client) {
    try {
        const std::string token = tokens.issue({client.m_strEnterprise, client.m_strUser}, client.m_strCredential);
        if (!token.empty())
            KeepLoginToken(client.m_strEnterprise, client.m_strUser, client.m_strCredential, client.m_strServer, CString(token));
    } catch (const CCentreError&) {
    }
}

int CEmbeddedBomCentre::autoLogin(CHexmoorInteFace& client) {
    m_loggedIn = false;
    if (client.m_strEnterprise.IsEmpty() || client.m_strUser.IsEmpty()) return 0;
    if (client.m_strCredential.IsEmpty()) return -1;
    CBomCentreOperations* centre = operations();
    if (!centre) return -1;
    const CentreUser user{client.m_strEnterprise, client.m_strUser};
    const CString token = StoredLoginToken(client.m_strEnterprise, client.m_strUser, client.m_strCredential, client.m_strServer);
    int result = -1;
    try {
        // A token that does not open the account is no refusal: the credential is checked as without one.
        CLoginTokens tokens(*m_store);
        if (!token.IsEmpty() && tokens.verify(user, client.m_strCredential, token)) {
            result = 1;
        } else {
            result = centre->CheckAccount(client.m_strEnterprise, client.m_strUser, client.m_strCredential);
            if (result >= 1) keepToken(tokens, client);
        }
    } catch (const CCentreError& error) {
        TellCentreMessage(error.message());
    }
    if (result < 1) return result;
    m_loggedIn = true;
    m_user = user;
    return 1;
}

bool CEmbeddedBomCentre::UserInfoCollect(const CString& item, const CString& key, const CString& text) {
    return guarded(false, [&](CBomCentreOperations& centre) {
        centre.KeepUsageFile(m_user, item, key, text);
        return true;
    });
}

CString CEmbeddedBomCentre::getProjectName(const CString& id) {
    return guarded(CString(), [&](CBomCentreOperations& centre) { return centre.ProjectName(m_user, id); });
}

HMProjectTree_INFO* CEmbeddedBomCentre::chooseProject() {
    return guarded(static_cast<HMProjectTree_INFO*>(nullptr), [&](CBomCentreOperations& centre) -> HMProjectTree_INFO* {
        const auto projects = centre.Projects(m_user);
        if (projects.empty()) {
            TellCentreMessage(QxFormat(u"The enterprise %s has no project in the BOM centre yet.", m_user.enterprise));
            return nullptr;
        }
        CStringArray options;
        for (const CentreProject& project : projects)
            options.Add(QxFormat(u"%s (ID %d, created %s)", HMPrintableNodeName(project.name), project.id,
                                 HMPrintableNodeName(project.created)));
        const auto chosen = HostPrompts().AskChoice(u"Hexmoor project", options);
        if (!chosen || *chosen < 0 || *chosen >= static_cast<int>(projects.size())) return nullptr;
        return centre.ProjectTree(m_user, CString(std::to_string(projects[static_cast<size_t>(*chosen)].id))).release();
    });
}

HMProjectTree_INFO* CEmbeddedBomCentre::getProjectInfo(HMProjectTree_INFO* local) {
    if (!local) return chooseProject();
    return guarded(static_cast<HMProjectTree_INFO*>(nullptr), [&](CBomCentreOperations& centre) -> HMProjectTree_INFO* {
        auto tree = centre.ProjectTree(m_user, local->m_strID);
        if (!tree) TellCentreMessage(QxFormat(u"The BOM centre has no project of the ID \"%s\" (\"%s\").", local->m_strID, local->m_strName));
        return tree.release();
    });
}

HMProjectTree_INFO* CEmbeddedBomCentre::getOneCabProjectInfo() {
    return guarded(static_cast<HMProjectTree_INFO*>(nullptr),
                   [&](CBomCentreOperations& centre) { return centre.OneCabinetTree(m_user).release(); });
}

bool CEmbeddedBomCentre::submitItm(HMProjectTree_INFO* tree) {
    if (!tree) return false;
    return guarded(false, [&](CBomCentreOperations& centre) {
        centre.SubmitItm(m_user, *tree);
        return true;
    });
}

bool CEmbeddedBomCentre::reportSubmit(const SubmitReport& report, const char16_t* operation) {
    for (const CString& skipped : report.skipped) TellCentreMessage(QxFormat(u"%s did not take %s.", CString(operation), skipped));
    return report.skipped.empty();
}

// The accepted rows go back into m_strBoms whichever the flag, so that the nodes written back hold them.
bool CEmbeddedBomCentre::submitBom(HMProjectTree_INFO* tree, bool) {
    if (!tree) return false;
    return guarded(false, [&](CBomCentreOperations& centre) { return reportSubmit(centre.SubmitBom(m_user, *tree), u"submitBom"); });
}

bool CEmbeddedBomCentre::submitOneCabCir2(HMProjectTree_INFO* tree) {
    if (!tree) return false;
    return guarded(false, [&](CBomCentreOperations& centre) {
        return reportSubmit(centre.SubmitSecondary(m_user, *tree), u"submitOneCabCir2");
    });
}

void CEmbeddedBomCentre::bomCmp(HMProjectTree_INFO* tree) {
    if (!tree) return;
    guarded(false, [&](CBomCentreOperations& centre) {
        acutPrintf(u"\n%s", FormatComparison(centre.Compare(m_user, *tree)));
        return true;
    });
}

bool CEmbeddedBomCentre::getDqBoms(BomRows& rows) {
    return guarded(false, [&](CBomCentreOperations& centre) {
        rows = centre.PartsCatalogue(m_user);
        return true;
    });
}

bool CEmbeddedBomCentre::getImportBoms(const CString& projectId, const CString& cabinetId, BomRows& rows) {
    return guarded(false, [&](CBomCentreOperations& centre) { return centre.ImportRows(m_user, projectId, cabinetId, rows); });
}
