// The embedded BOM centre: the product's backend of the cloud client, a SQLite file on this machine
// (LocalData\hexmoor.db of the install folder, or the file that $HEXMOOR_STORE names). The centre's
// operations run here, in the client's process; this backend adds the session (who is logged in) and the
// person: the questions of the login and of the choice of a project, the comparison table, and a clear
// message for every refusal or store failure.
#pragma once

#include "platform/cloud/HexmoorBackend.h"
#include "centre/operations/BomCentreOperations.h"

#include <functional>
#include <memory>
#include <string>

class CLoginTokens;

class QX_API CEmbeddedBomCentre final : public IHexmoorBackend {
public:
    using StoreOpener = std::function<std::unique_ptr<ICentreStore>()>;

    // The store file of the install (or of $HEXMOOR_STORE).
    CEmbeddedBomCentre();
    // A store of the caller's making, opened on first use; for other stores and for tests.
    explicit CEmbeddedBomCentre(StoreOpener opener);
    ~CEmbeddedBomCentre() override;

    int Login(CHexmoorInteFace& client) override;
    int autoLogin(CHexmoorInteFace& client) override;
    bool isLogin() override { return m_loggedIn; }
    bool UserInfoCollect(const CString& item, const CString& key, const CString& text) override;
    CString getProjectName(const CString& id) override;
    HMProjectTree_INFO* getProjectInfo(HMProjectTree_INFO* local) override;
    HMProjectTree_INFO* getOneCabProjectInfo() override;
    bool submitItm(HMProjectTree_INFO* tree) override;
    bool submitBom(HMProjectTree_INFO* tree, bool keepAcceptedRows) override;
    void bomCmp(HMProjectTree_INFO* tree) override;
    bool submitOneCabCir2(HMProjectTree_INFO* tree) override;
    bool getDqBoms(BomRows& rows) override;
    bool getImportBoms(const CString& projectId, const CString& cabinetId, BomRows& rows) override;

    // The native path of the store file, or empty when the install folder is not there.
    static std::string StorePath();

private:
    // The operations over the store, opening it on first use; null (after one message) when it cannot be.
    CBomCentreOperations* operations();
    // Runs one operation for the logged-in user; a refusal or failure is told to the person and gives `failed`.
    template <typename Result, typename Work>
    Result guarded(Result failed, Work&& work);
    HMProjectTree_INFO* chooseProject();
    void keepToken(CLoginTokens& tokens, const CHexmoorInteFace& client);
    bool reportSubmit(const SubmitReport& report, const char16_t* operation);

    StoreOpener m_opener;
    std::unique_ptr<ICentreStore> m_store;
    std::unique_ptr<CBomCentreOperations> m_operations;
    bool m_storeFailed = false;
    bool m_loggedIn = false;
    CentreUser m_user;
};
