// The JSON API: one route per backend operation of the client, and the revisions the web view shows.
#include "centre/server/RevisionHistory.h"
#include "centre/server/ServerContext.h"

using nlohmann::json;

namespace {

std::string bearerToken(const httplib::Request& request) {
    const std::string header = request.get_header_value("Authorization");
    const std::string prefix = "Bearer ";
    return header.starts_with(prefix) ? header.substr(prefix.size()) : std::string();
}

// Runs the work for the token's user; 401 without a valid token.
template <typename Work>
auto authorized(ServerContext& context, Work work) {
    return [&context, work](const httplib::Request& request, httplib::Response& response) {
        RunWithStore(context, response, [&](CBomCentreOperations& centre, ICentreStore& store) {
            const auto user = context.sessions.use(store, bearerToken(request));
            if (!user) return SendError(response, 401, "log in first: the session token is missing, unknown or lapsed");
            work(*user, request, response, centre, store);
        });
    };
}

json body(const httplib::Request& request) { return ParseRequestJson(request.body); }

// Deep enough for the deepest tree a request may carry (each level is an object in a list).
constexpr int kMaxJsonDepth = 3 * kMaxTreeDepth + 8;

std::unique_ptr<HMProjectTree_INFO> treeOf(const json& body) {
    if (!body.is_object() || !body.contains("tree")) throw CCentreJsonError("the field \"tree\" is missing");
    return TreeFromJson(body.at("tree"));
}

// A tree that names a project must name one of the user's enterprise.
void requireOwnProject(CBomCentreOperations& centre, const CentreUser& who, const HMProjectTree_INFO& tree) {
    if (HMIsDeviceType(tree.m_strType) || tree.m_strID.IsEmpty()) return;
    if (centre.ProjectName(who, tree.m_strID).IsEmpty()) throw CNotFound();
}

json projectJson(const CentreProject& project) {
    return {{"id", project.id}, {"name", project.name.ToUtf8()}, {"created", project.created.ToUtf8()},
            {"lastRevision", project.lastRevisionId}};
}

json rowsJson(const std::vector<CentreRow>& rows) {
    json out = json::array();
    for (const CentreRow& row : rows)
        out.push_back({{"label", row.label.ToUtf8()}, {"name", row.name.ToUtf8()}, {"model", row.model.ToUtf8()},
                       {"count", row.count.ToUtf8()}, {"remark", row.remark.ToUtf8()}, {"code", row.code.ToUtf8()},
                       {"secondary", row.secondary}});
    return out;
}

// The client's key of one submit, the same in every sending of it: absent (an older client) or 16 to 64
// letters, digits, '-' and '_'.
CString submitKeyOf(const json& body) {
    const auto key = body.find("key");
    if (key == body.end()) return CString();
    const bool wellFormed = key->is_string() && key->get_ref<const std::string&>().size() >= 16 &&
                            key->get_ref<const std::string&>().size() <= 64 &&
                            key->get_ref<const std::string&>().find_first_not_of(
                                "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-_") == std::string::npos;
    if (!wellFormed) throw CCentreJsonError("the field \"key\" must be 16 to 64 letters, digits, '-' or '_'");
    return CString::FromUtf8(key->get<std::string>());
}

void submitRoute(httplib::Server& server, ServerContext& context, const char* path,
                 SubmitReport (CBomCentreOperations::*operation)(const CentreUser&, HMProjectTree_INFO&, const CString&)) {
    server.Post(path, authorized(context, [operation](const CentreUser& who, const httplib::Request& request,
                                                      httplib::Response& response, CBomCentreOperations& centre, ICentreStore&) {
                    const json submit = body(request);
                    auto tree = treeOf(submit);
                    const CString submitKey = submitKeyOf(submit);
                    requireOwnProject(centre, who, *tree);
                    const SubmitReport report = (centre.*operation)(who, *tree, submitKey);
                    SendJson(response, 200, {{"tree", TreeToJson(*tree)}, {"report", ReportToJson(report)}});
                }));
}

} // namespace

void RegisterCentreApi(httplib::Server& server, ServerContext& context) {
    server.Post("/api/login", [&context](const httplib::Request& request, httplib::Response& response) {
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            const json login = body(request);
            const CString enterprise = JsonText(login, "enterprise");
            const CString user = JsonText(login, "user");
            const CString credential = JsonText(login, "credential");
            if (enterprise.IsEmpty() || user.IsEmpty() || credential.IsEmpty())
                return SendError(response, 400, "enterprise, user and credential must not be empty");
            const LoginAnswer answer = LogIn(context, store, request, {enterprise, user}, credential);
            if (answer.outcome == LoginAnswer::Outcome::Throttled) {
                response.set_header("Retry-After", std::to_string(answer.wait.count()));
                return SendError(response, 429, "too many wrong credentials: try again in " + std::to_string(answer.wait.count()) + " s");
            }
            if (answer.outcome == LoginAnswer::Outcome::Refused)
                return SendError(response, 401, "the credential does not match this enterprise and user");
            SendJson(response, 200, {{"token", answer.token}});
        });
    });
    server.Post("/api/logout", [&context](const httplib::Request& request, httplib::Response& response) {
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            if (const std::string token = bearerToken(request); !token.empty()) context.sessions.close(store, token);
            SendJson(response, 200, json::object());
        });
    });
    server.Post("/api/usage", authorized(context, [](const CentreUser& who, const httplib::Request& request,
                                                     httplib::Response& response, CBomCentreOperations& centre, ICentreStore&) {
                    const json usage = body(request);
                    centre.KeepUsageFile(who, JsonText(usage, "item"), JsonText(usage, "key"), JsonText(usage, "text"));
                    SendJson(response, 200, json::object());
                }));
    server.Get("/api/projects", authorized(context, [](const CentreUser& who, const httplib::Request&, httplib::Response& response,
                                                       CBomCentreOperations& centre, ICentreStore&) {
                   json list = json::array();
                   for (const CentreProject& project : centre.Projects(who)) list.push_back(projectJson(project));
                   SendJson(response, 200, list);
               }));
    server.Get(R"(/api/projects/(\d+)/name)",
               authorized(context, [](const CentreUser& who, const httplib::Request& request, httplib::Response& response,
                                      CBomCentreOperations& centre, ICentreStore&) {
                   const CString name = centre.ProjectName(who, CString(std::to_string(PathId(request.matches[1]))));
                   if (name.IsEmpty()) throw CNotFound();
                   SendJson(response, 200, {{"name", name.ToUtf8()}});
               }));
    server.Get(R"(/api/projects/(\d+)/tree)",
               authorized(context, [](const CentreUser& who, const httplib::Request& request, httplib::Response& response,
                                      CBomCentreOperations& centre, ICentreStore&) {
                   auto tree = centre.ProjectTree(who, CString(std::to_string(PathId(request.matches[1]))));
                   if (!tree) throw CNotFound();
                   SendJson(response, 200, TreeToJson(*tree));
               }));
    server.Get(R"(/api/projects/(\d+)/rows)",
               authorized(context, [](const CentreUser& who, const httplib::Request& request, httplib::Response& response,
                                      CBomCentreOperations& centre, ICentreStore&) {
                   BomRows rows;
                   const CString cabinet = RequestText(request, "cabinet");
                   if (!centre.ImportRows(who, CString(std::to_string(PathId(request.matches[1]))), cabinet, rows)) throw CNotFound();
                   SendJson(response, 200, RowsToJson(rows));
               }));
    server.Get("/api/one-cabinet", authorized(context, [](const CentreUser& who, const httplib::Request&, httplib::Response& response,
                                                          CBomCentreOperations& centre, ICentreStore&) {
                   auto tree = centre.OneCabinetTree(who);
                   if (!tree) throw CNotFound();
                   SendJson(response, 200, TreeToJson(*tree));
               }));
    server.Get("/api/parts", authorized(context, [](const CentreUser& who, const httplib::Request&, httplib::Response& response,
                                                    CBomCentreOperations& centre, ICentreStore&) {
                   SendJson(response, 200, RowsToJson(centre.PartsCatalogue(who)));
               }));
    server.Post("/api/submit-itm", authorized(context, [](const CentreUser& who, const httplib::Request& request,
                                                          httplib::Response& response, CBomCentreOperations& centre, ICentreStore&) {
                    auto tree = treeOf(body(request));
                    centre.SubmitItm(who, *tree);
                    SendJson(response, 200, {{"tree", TreeToJson(*tree)}});
                }));
    submitRoute(server, context, "/api/submit-bom", &CBomCentreOperations::SubmitBom);
    submitRoute(server, context, "/api/submit-secondary", &CBomCentreOperations::SubmitSecondary);
    server.Post("/api/compare", authorized(context, [](const CentreUser& who, const httplib::Request& request,
                                                       httplib::Response& response, CBomCentreOperations& centre, ICentreStore&) {
                    auto tree = treeOf(body(request));
                    requireOwnProject(centre, who, *tree);
                    SendJson(response, 200, ComparisonsToJson(centre.Compare(who, *tree)));
                }));
    server.Get(R"(/api/projects/(\d+)/devices/(\d+)/revisions)",
               authorized(context, [](const CentreUser& who, const httplib::Request& request, httplib::Response& response,
                                      CBomCentreOperations&, ICentreStore& store) {
                   const auto history = ReadDeviceHistory(store, who, PathId(request.matches[1]), PathId(request.matches[2]));
                   if (!history) throw CNotFound();
                   json list = json::array();
                   for (const CentreRevision& revision : history->revisions)
                       list.push_back({{"number", revision.number}, {"kind", revision.kind.ToUtf8()}, {"user", revision.user.ToUtf8()},
                                       {"submitted", revision.submitted.ToUtf8()}, {"rows", rowsJson(store.rows(revision.id))}});
                   SendJson(response, 200, list);
               }));
}

json ParseRequestJson(const std::string& text) {
    const json::parser_callback_t check = [](int depth, json::parse_event_t event, json& parsed) {
        if (depth > kMaxJsonDepth) throw CCentreJsonError("the JSON is nested deeper than " + std::to_string(kMaxJsonDepth) + " levels");
        if ((event == json::parse_event_t::value || event == json::parse_event_t::key) && parsed.is_string() &&
            parsed.get_ref<const std::string&>().find('\0') != std::string::npos)
            throw CCentreJsonError("a text holding a NUL character is refused");
        return true;
    };
    return json::parse(text, check);
}

CString RequestText(const httplib::Request& request, const char* name) {
    const std::string value = request.get_param_value(name);
    if (value.find('\0') != std::string::npos) throw CCentreJsonError("a text holding a NUL character is refused");
    return CString::FromUtf8(value);
}

long long PathId(const std::string& text) {
    // Longer digit runs than a 64-bit ID would overflow; they name nothing.
    if (text.empty() || text.size() > 18) throw CNotFound();
    return std::stoll(text);
}

void SendJson(httplib::Response& response, int status, const json& body) {
    response.status = status;
    response.set_content(body.dump(-1, ' ', false, json::error_handler_t::replace), "application/json");
}

void SendError(httplib::Response& response, int status, const std::string& message) {
    SendJson(response, status, {{"error", message}});
}
