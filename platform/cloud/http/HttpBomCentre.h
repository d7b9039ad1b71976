// The cloud client's backend for a BOM centre served by hexmoord: each operation is one JSON request. Like
// the embedded centre, it asks the person for the login items and the choice of a project, prints the
// comparison, and tells every refusal in one message; the centre's rules run on the server.
#pragma once

#include "platform/cloud/HexmoorBackend.h"
#include "platform/cloud/http/HttpTransport.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

// One project of the centre's list, as the person chooses among them.
struct ListedProject {
    std::string id;  // decimal, as the path of the project's tree takes it
    CString name;
    CString created;
};

// The reply to the list of projects, every field checked: nullopt for a reply of any other shape.
QX_API std::optional<std::vector<ListedProject>> ProjectListFromJson(const nlohmann::json& reply);
// The project's line in the list offered, control characters shown as \xHH.
QX_API CString ProjectChoiceText(const ListedProject& project);

// True for an endpoint that names a server: "http://…" or "https://…" (scheme in any case).
QX_API bool IsHttpEndpoint(const CString& endpoint);

class QX_API CHttpBomCentre final : public IHexmoorBackend {
public:
    explicit CHttpBomCentre(const CString& endpoint);
    ~CHttpBomCentre() override;

    int Login(CHexmoorInteFace& client) override;
    int autoLogin(CHexmoorInteFace& client) override;
    bool isLogin() override { return !m_token.empty(); }
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

private:
    // One request; the reply's JSON when it came with 200. A 404 is quiet (the caller knows what was not
    // there); every other failure is told to the person, and a 401 ends the session.
    std::optional<nlohmann::json> call(const char* method, const std::string& path, const nlohmann::json* body = nullptr);
    bool submitTree(const char* path, HMProjectTree_INFO& tree, const char16_t* operation);
    // Logs in again with the last login's items; false when that is refused.
    bool loginQuietly();
    HMProjectTree_INFO* chooseProject();

    CString m_endpoint;
    CHttpTransport m_http;
    std::string m_token;
    std::optional<nlohmann::json> m_login;  // the last accepted login's request, for a silent login again
    long m_lastStatus = 0;  // of the last reply, 0 when none came
};
