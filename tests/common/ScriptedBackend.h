// A cloud backend whose answers a test writes beforehand and whose calls it reads afterwards. Install it
// with ScriptedCloud: every client made while that lives gets a backend that plays the same script.
#pragma once

#include "platform/cloud/HexmoorClient.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

struct CloudScript {
    // Answers.
    int loginResult = 1;
    int autoLoginResult = 1;
    bool collectResult = true;
    std::map<std::u16string, CString> projectNames;
    // Filled into the client by an interactive login.
    CString loginEnterprise = u"ent";
    CString loginUser = u"user";
    CString loginCredential = u"secret";
    // What the project operations answer; an empty projectInfo gives null.
    std::function<HMProjectTree_INFO*(HMProjectTree_INFO* local)> projectInfo;
    bool submitItmResult = false;
    bool submitBomResult = false;
    bool submitOneCabResult = false;
    bool dqResult = false;
    bool importResult = false;
    BomRows dqRows;
    BomRows importRows;

    // What happened.
    int loginCalls = 0;
    int autoLoginCalls = 0;
    int oneCabCalls = 0;
    struct Login {
        CString enterprise, user, credential, server, clientTag, clientInfo;
    };
    std::vector<Login> autoLogins;
    struct Collected {
        CString item, key, text;
    };
    std::vector<Collected> collected;
    std::vector<CString> projectNameQueries;
    int projectInfoCalls = 0;
    int submitItmCalls = 0;
    int bomCmpCalls = 0;
    int submitOneCabCalls = 0;
    std::vector<bool> submitBomFlags;
    struct ImportQuery {
        CString projectId, cabinetId;
    };
    std::vector<ImportQuery> importQueries;
    bool loggedIn = false;
};

class ScriptedBackend final : public IHexmoorBackend {
public:
    explicit ScriptedBackend(std::shared_ptr<CloudScript> script) : m_script(std::move(script)) {}

    int Login(CHexmoorInteFace& client) override {
        ++m_script->loginCalls;
        if (m_script->loginResult >= 1) {
            client.m_strEnterprise = m_script->loginEnterprise;
            client.m_strUser = m_script->loginUser;
            client.m_strCredential = m_script->loginCredential;
        }
        m_script->loggedIn = m_script->loginResult >= 1;
        return m_script->loginResult;
    }
    int autoLogin(CHexmoorInteFace& client) override {
        ++m_script->autoLoginCalls;
        m_script->autoLogins.push_back({client.m_strEnterprise, client.m_strUser, client.m_strCredential,
                                        client.m_strServer, client.m_strClientTag, client.m_strClientInfo});
        m_script->loggedIn = m_script->autoLoginResult >= 1;
        return m_script->autoLoginResult;
    }
    bool isLogin() override { return m_script->loggedIn; }
    bool UserInfoCollect(const CString& item, const CString& key, const CString& text) override {
        m_script->collected.push_back({item, key, text});
        return m_script->collectResult;
    }
    CString getProjectName(const CString& id) override {
        m_script->projectNameQueries.push_back(id);
        const auto it = m_script->projectNames.find(id.str());
        return it == m_script->projectNames.end() ? CString() : it->second;
    }
    HMProjectTree_INFO* getProjectInfo(HMProjectTree_INFO* local) override {
        ++m_script->projectInfoCalls;
        return m_script->projectInfo ? m_script->projectInfo(local) : nullptr;
    }
    HMProjectTree_INFO* getOneCabProjectInfo() override {
        ++m_script->oneCabCalls;
        auto* tree = new HMProjectTree_INFO;
        tree->m_strName = u"cabinet";
        return tree;
    }
    bool submitItm(HMProjectTree_INFO*) override {
        ++m_script->submitItmCalls;
        return m_script->submitItmResult;
    }
    bool submitBom(HMProjectTree_INFO*, bool flag) override {
        m_script->submitBomFlags.push_back(flag);
        return m_script->submitBomResult;
    }
    void bomCmp(HMProjectTree_INFO*) override { ++m_script->bomCmpCalls; }
    bool submitOneCabCir2(HMProjectTree_INFO*) override {
        ++m_script->submitOneCabCalls;
        return m_script->submitOneCabResult;
    }
    bool getDqBoms(BomRows& rows) override {
        if (m_script->dqResult) rows = m_script->dqRows;
        return m_script->dqResult;
    }
    bool getImportBoms(const CString& projectId, const CString& cabinetId, BomRows& rows) override {
        m_script->importQueries.push_back({projectId, cabinetId});
        if (m_script->importResult) rows = m_script->importRows;
        return m_script->importResult;
    }

private:
    std::shared_ptr<CloudScript> m_script;
};

// Installs the scripted backend for as long as it lives.
class ScriptedCloud {
public:
    ScriptedCloud() : script(std::make_shared<CloudScript>()) {
        auto shared = script;
        SetHexmoorBackendFactory([shared] { return std::make_unique<ScriptedBackend>(shared); });
    }
    ~ScriptedCloud() { SetHexmoorBackendFactory({}); }
    ScriptedCloud(const ScriptedCloud&) = delete;
    ScriptedCloud& operator=(const ScriptedCloud&) = delete;

    std::shared_ptr<CloudScript> script;
};
