// The embedded BOM centre: the product's backend of the cloud client, a SQLite file on this machine
// (LocalData\hexmoor.db of the install folder, or the file that $HEXMOOR_STORE names). It keeps accounts,
// projects and the usage files that clients send.
#pragma once

#include "platform/cloud/HexmoorBackend.h"

#include <memory>
#include <string>

class SqliteStore;

class QX_API CEmbeddedBomCentre final : public IHexmoorBackend {
public:
    CEmbeddedBomCentre();
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
    // Opens the store on first use; null (after one message) when it cannot be opened.
    SqliteStore* store();
    // 1: logged in (a new account is made on the first login); -1: wrong credential or no store.
    int checkAccount(const CString& enterprise, const CString& user, const CString& credential);
    void notYetAvailable(const char* operation);

    std::unique_ptr<SqliteStore> m_store;
    bool m_storeFailed = false;
    bool m_loggedIn = false;
    CString m_enterprise;
    CString m_user;
};
