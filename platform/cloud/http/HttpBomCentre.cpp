#include "platform/cloud/http/HttpBomCentre.h"

#include "platform/cloud/CentrePerson.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/http/CentreJson.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "project/NodeNames.h"
#include "support/Format.h"

using nlohmann::json;

#include <random>

namespace {

// A submit's own key, made once and sent with every sending of it (libcurl's resend, the repeat after a
// silent login): the centre keeps a submit once however often it arrives. 128 random bits.
std::string newSubmitKey() {
    std::random_device source;
    static const char* hex = "0123456789abcdef";
    std::string key;
    for (int i = 0; i < 4; ++i) {
        const unsigned bits = source();
        for (int shift = 0; shift < 32; shift += 4) key += hex[(bits >> shift) & 15];
    }
    return key;
}

// An ID as a path segment: digits only, else it names nothing the server has.
std::optional<std::string> idSegment(const CString& id) {
    std::string text = id.ToUtf8();
    if (text.empty() || text.size() > 18 || text.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    return text;
}

std::string escapeQuery(const std::string& text) {
    static const char* hex = "0123456789ABCDEF";
    std::string out;
    for (const unsigned char c : text) {
        if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~') out += static_cast<char>(c);
        else out += {'%', hex[c >> 4], hex[c & 15]};
    }
    return out;
}

} // namespace

std::optional<std::vector<ListedProject>> ProjectListFromJson(const json& reply) {
    if (!reply.is_array()) return std::nullopt;
    std::vector<ListedProject> projects;
    for (const json& project : reply) {
        if (!project.is_object()) return std::nullopt;
        const auto id = project.find("id");
        const auto name = project.find("name");
        const auto created = project.find("created");
        // IDs are decimal keys without leading zeros; anything else names no project of the centre.
        if (id == project.end() || !id->is_number_integer()) return std::nullopt;
        const bool positive = id->is_number_unsigned() ? id->get<unsigned long long>() > 0 : id->get<long long>() > 0;
        if (!positive) return std::nullopt;
        if (name == project.end() || !name->is_string() || created == project.end() || !created->is_string()) return std::nullopt;
        projects.push_back({std::to_string(id->get<unsigned long long>()), CString::FromUtf8(name->get<std::string>()),
                            CString::FromUtf8(created->get<std::string>())});
    }
    return projects;
}

CString ProjectChoiceText(const ListedProject& project) {
    return QxFormat(u"%s (ID %s, created %s)", HMPrintableNodeName(project.name), CString(project.id),
                    HMPrintableNodeName(project.created));
}

bool IsHttpEndpoint(const CString& endpoint) {
    std::string text = endpoint.ToUtf8();
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text.starts_with("http://") || text.starts_with("https://");
}

CHttpBomCentre::CHttpBomCentre(const CString& endpoint) : m_endpoint(endpoint), m_http(endpoint.ToUtf8()) {}

CHttpBomCentre::~CHttpBomCentre() = default;

std::optional<json> CHttpBomCentre::call(const char* method, const std::string& path, const json* body) {
    const std::string text = body ? body->dump(-1, ' ', false, json::error_handler_t::replace) : std::string();
    HttpReply reply = m_http.request(method, path, text, m_token);
    // The session ended on the server (a restart of an older server, a lapse, the administrator): log in
    // again once, silently, with what the last login gave, and ask again.
    if (reply.status == 401 && path != "/api/login" && m_login && loginQuietly())
        reply = m_http.request(method, path, text, m_token);
    m_lastStatus = reply.status;
    if (reply.status == 0) {
        TellCentreMessage(QxFormat(u"The BOM centre at %s cannot be reached: %s.", m_endpoint, CString::FromUtf8(reply.failure)));
        return std::nullopt;
    }
    json parsed = json::parse(reply.body, nullptr, false);
    if (reply.status == 200 && !parsed.is_discarded()) return parsed;
    if (reply.status == 404) return std::nullopt;
    if (reply.status == 401) m_token.clear();
    const bool hasMessage = parsed.is_object() && parsed.contains("error") && parsed["error"].is_string();
    const CString message = hasMessage ? CString::FromUtf8(parsed["error"].get<std::string>()) : CString(u"no reason given");
    TellCentreMessage(QxFormat(u"The BOM centre refused the request (%d): %s.", static_cast<int>(reply.status), message));
    return std::nullopt;
}

int CHttpBomCentre::Login(CHexmoorInteFace& client) {
    return AskCentreLogin(client) ? autoLogin(client) : 0;
}

int CHttpBomCentre::autoLogin(CHexmoorInteFace& client) {
    m_token.clear();
    m_login.reset();
    if (client.m_strEnterprise.IsEmpty() || client.m_strUser.IsEmpty()) return 0;
    if (client.m_strCredential.IsEmpty()) return -1;
    const json login{{"enterprise", client.m_strEnterprise.ToUtf8()}, {"user", client.m_strUser.ToUtf8()},
                     {"credential", client.m_strCredential.ToUtf8()}};
    const auto reply = call("POST", "/api/login", &login);
    if (!reply || !reply->contains("token") || !(*reply)["token"].is_string()) return -1;
    m_token = (*reply)["token"].get<std::string>();
    m_login = login;
    return 1;
}

bool CHttpBomCentre::loginQuietly() {
    const HttpReply reply = m_http.request("POST", "/api/login", m_login->dump(), "");
    const json answer = json::parse(reply.body, nullptr, false);
    m_token.clear();
    if (reply.status != 200 || !answer.is_object() || !answer.contains("token") || !answer["token"].is_string()) {
        m_login.reset();
        return false;
    }
    m_token = answer["token"].get<std::string>();
    return true;
}

bool CHttpBomCentre::UserInfoCollect(const CString& item, const CString& key, const CString& text) {
    if (!isLogin()) return false;
    const json usage{{"item", item.ToUtf8()}, {"key", key.ToUtf8()}, {"text", text.ToUtf8()}};
    return call("POST", "/api/usage", &usage).has_value();
}

CString CHttpBomCentre::getProjectName(const CString& id) {
    const auto segment = idSegment(id);
    if (!isLogin() || !segment) return CString();
    const auto reply = call("GET", "/api/projects/" + *segment + "/name");
    try {
        return reply ? JsonText(*reply, "name") : CString();
    } catch (const CCentreJsonError& error) {
        TellCentreMessage(QxFormat(u"The BOM centre's project name cannot be read: %s.", CString(error.what())));
        return CString();
    }
}

HMProjectTree_INFO* CHttpBomCentre::chooseProject() {
    const auto reply = call("GET", "/api/projects");
    if (!reply) return nullptr;
    const std::optional<std::vector<ListedProject>> projects = ProjectListFromJson(*reply);
    if (!projects) {
        TellCentreMessage(u"The BOM centre sent a list of projects that cannot be read; nothing of it was taken.");
        return nullptr;
    }
    if (projects->empty()) {
        TellCentreMessage(u"Your enterprise has no project in the BOM centre yet.");
        return nullptr;
    }
    CStringArray options;
    for (const ListedProject& project : *projects) options.Add(ProjectChoiceText(project));
    const auto chosen = HostPrompts().AskChoice(u"Hexmoor project", options);
    if (!chosen || *chosen < 0 || *chosen >= static_cast<int>(projects->size())) return nullptr;
    const auto tree = call("GET", "/api/projects/" + (*projects)[static_cast<size_t>(*chosen)].id + "/tree");
    return tree ? TreeFromJson(*tree).release() : nullptr;
}

HMProjectTree_INFO* CHttpBomCentre::getProjectInfo(HMProjectTree_INFO* local) {
    if (!isLogin()) return nullptr;
    try {
        if (!local) return chooseProject();
        const auto segment = idSegment(local->m_strID);
        const auto tree = segment ? call("GET", "/api/projects/" + *segment + "/tree") : std::nullopt;
        if (!tree) {
            if (segment && m_lastStatus != 404) return nullptr;
            TellCentreMessage(QxFormat(u"The BOM centre has no project of the ID \"%s\" (\"%s\").", local->m_strID, local->m_strName));
            return nullptr;
        }
        return TreeFromJson(*tree).release();
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre sent a tree that cannot be read: %s.", CString(error.what())));
        return nullptr;
    }
}

HMProjectTree_INFO* CHttpBomCentre::getOneCabProjectInfo() {
    if (!isLogin()) return nullptr;
    const auto tree = call("GET", "/api/one-cabinet");
    try {
        return tree ? TreeFromJson(*tree).release() : nullptr;
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre sent a tree that cannot be read: %s.", CString(error.what())));
        return nullptr;
    }
}

// The server's tree comes back whole; what the centre changed is copied into the caller's nodes, which the
// module holds pointers to.
bool CHttpBomCentre::submitTree(const char* path, HMProjectTree_INFO& tree, const char16_t* operation) {
    if (!isLogin()) return false;
    json request{{"tree", TreeToJson(tree)}};
    // A new project is guarded by its name, which a second sending finds taken; revisions by the key.
    if (std::string(path) != "/api/submit-itm") request["key"] = newSubmitKey();
    const auto reply = call("POST", path, &request);
    if (!reply) {
        if (m_lastStatus != 404) return false;
        TellCentreMessage(QxFormat(u"The BOM centre has no project of the ID \"%s\" (\"%s\").", tree.m_strID, tree.m_strName));
        return false;
    }
    try {
        if (!reply->is_object() || !reply->contains("tree")) throw CCentreJsonError("the answer holds no tree");
        const auto answered = TreeFromJson(reply->at("tree"));
        if (!CopyCentreFields(*answered, tree)) {
            TellCentreMessage(u"The BOM centre sent back a tree of another shape; nothing of it was taken.");
            return false;
        }
        if (!reply->contains("report")) return true;  // the team centre's answer to submitItm has none
        const SubmitReport report = ReportFromJson(reply->at("report"));
        for (const CString& skipped : report.skipped) TellCentreMessage(QxFormat(u"%s did not take %s.", CString(operation), skipped));
        return report.skipped.empty();
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre's answer cannot be read: %s.", CString(error.what())));
        return false;
    }
}

bool CHttpBomCentre::submitItm(HMProjectTree_INFO* tree) { return tree && submitTree("/api/submit-itm", *tree, u"submitItm"); }

// The accepted rows go back into m_strBoms whichever the flag, as with the embedded centre.
bool CHttpBomCentre::submitBom(HMProjectTree_INFO* tree, bool) { return tree && submitTree("/api/submit-bom", *tree, u"submitBom"); }

bool CHttpBomCentre::submitOneCabCir2(HMProjectTree_INFO* tree) {
    return tree && submitTree("/api/submit-secondary", *tree, u"submitOneCabCir2");
}

void CHttpBomCentre::bomCmp(HMProjectTree_INFO* tree) {
    if (!tree || !isLogin()) return;
    const json request{{"tree", TreeToJson(*tree)}};
    const auto reply = call("POST", "/api/compare", &request);
    if (!reply) return;
    try {
        acutPrintf(u"\n%s", FormatComparison(ComparisonsFromJson(*reply)));
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre's comparison cannot be read: %s.", CString(error.what())));
    }
}

bool CHttpBomCentre::getDqBoms(BomRows& rows) {
    if (!isLogin()) return false;
    const auto reply = call("GET", "/api/parts");
    if (!reply) return false;
    try {
        rows = RowsFromJson(*reply);
        return true;
    } catch (const std::exception& error) {
        TellCentreMessage(QxFormat(u"The BOM centre's parts cannot be read: %s.", CString(error.what())));
        return false;
    }
}

bool CHttpBomCentre::getImportBoms(const CString& projectId, const CString& cabinetId, BomRows& rows) {
    rows.RemoveAll();
    const auto segment = idSegment(projectId);
    if (!isLogin() || !segment) return false;
    const auto reply = call("GET", "/api/projects/" + *segment + "/rows?cabinet=" + escapeQuery(cabinetId.ToUtf8()));
    if (!reply) return false;
    try {
        rows = RowsFromJson(*reply);
        return true;
    } catch (const std::exception& error) {
        rows.RemoveAll();
        TellCentreMessage(QxFormat(u"The BOM centre's rows cannot be read: %s.", CString(error.what())));
        return false;
    }
}
