// The web view: after a login, the enterprise's projects, a project's tree, a device's rows by revision
// and the comparison of two revisions. Plain HTML made here; the session token rides in a cookie that
// scripts cannot read and other sites do not send.
#include "centre/server/RevisionHistory.h"
#include "centre/server/ServerContext.h"
#include "centre/server/WebHtml.h"
#include "centre/server/WebText.h"

#include <functional>

namespace {

constexpr const char* kCookie = "hexmoor_web";

std::string cookieToken(const httplib::Request& request) {
    const std::string cookies = request.get_header_value("Cookie");
    const std::string key = std::string(kCookie) + "=";
    size_t at = 0;
    while ((at = cookies.find(key, at)) != std::string::npos) {
        if (at == 0 || cookies[at - 1] == ' ' || cookies[at - 1] == ';') {
            const size_t start = at + key.size();
            return cookies.substr(start, cookies.find(';', start) - start);
        }
        at += key.size();
    }
    return {};
}

WebLanguage languageOf(const httplib::Request& request) { return LanguageOf(request.get_header_value("Accept-Language")); }

void sendPage(httplib::Response& response, int status, const std::string& html) {
    response.status = status;
    response.set_content(html, "text/html; charset=utf-8");
}

void redirect(httplib::Response& response, const std::string& to) {
    response.status = 303;
    response.set_header("Location", to);
}

std::string link(const std::string& href, const std::string& text) { return "<a href=\"" + href + "\">" + text + "</a>"; }
std::string projectHref(long long id) { return "/projects/" + std::to_string(id); }
std::string deviceHref(long long project, long long device) {
    return projectHref(project) + "/devices/" + std::to_string(device);
}

// A failed login keeps what was typed but the credential.
std::string loginPage(WebLanguage lang, const std::string& error, const CString& enterprise = {}, const CString& user = {}) {
    std::string body;
    if (!error.empty()) body += "<p class=\"error\" id=\"error\">" + HtmlEscape(error) + "</p>";
    body += "<form class=\"login\" method=\"post\" action=\"/login\">"
            "<label for=\"enterprise\">" + Say(lang, "Enterprise") + "</label><input id=\"enterprise\" name=\"enterprise\" value=\"" +
            HtmlEscape(enterprise) + "\" required>"
            "<label for=\"user\">" + Say(lang, "User") + "</label><input id=\"user\" name=\"user\" value=\"" + HtmlEscape(user) +
            "\" required>"
            "<label for=\"credential\">" + Say(lang, "Credential") +
            "</label><input id=\"credential\" name=\"credential\" type=\"password\" required>"
            "<button id=\"login\" type=\"submit\">" + Say(lang, "Log in") + "</button></form>";
    return HtmlPage(lang, Say(lang, "Log in"), "", body, false);
}

// Pages for a logged-in user; the others go to the login page.
using PageWork = std::function<void(const CentreUser&, const httplib::Request&, httplib::Response&, CBomCentreOperations&, ICentreStore&)>;
httplib::Server::Handler page(ServerContext& context, PageWork work) {
    return [&context, work](const httplib::Request& request, httplib::Response& response) {
        RunWithStore(context, response, [&](CBomCentreOperations& centre, ICentreStore& store) {
            const auto user = context.sessions.use(store, cookieToken(request));
            if (!user) return redirect(response, "/");
            work(*user, request, response, centre, store);
        });
        const WebLanguage lang = languageOf(request);
        if (response.status == 503)
            sendPage(response, 503, HtmlPage(lang, Say(lang, "Not available"), "",
                                             "<p>" + Say(lang, "The BOM centre's database is not available now; try again later.") + "</p>", false));
        if (response.status == 404)
            sendPage(response, 404, HtmlPage(lang, Say(lang, "Not found"), link("/projects", Say(lang, "Projects")),
                                             "<p>" + Say(lang, "Your enterprise has no such project or device.") + "</p>", true));
    };
}

std::string headings(std::initializer_list<std::string> words) {
    std::string html = "<tr>";
    for (const std::string& word : words) html += "<th>" + word + "</th>";
    return html + "</tr>";
}

std::string systemOf(WebLanguage lang, bool secondary) { return Say(lang, secondary ? "secondary" : "primary"); }

// Wide tables scroll inside their box, so that a narrow window never scrolls the page sideways.
std::string scrolling(const std::string& table) { return "<div class=\"scroll\">" + table + "</div>"; }

std::string rowsTable(WebLanguage lang, const std::vector<CentreRow>& rows) {
    if (rows.empty()) return "<p class=\"empty\">" + Say(lang, "This revision has no rows.") + "</p>";
    std::string html = "<table class=\"rows\">" + headings({Say(lang, "System"), Say(lang, "Name"), Say(lang, "Model"),
                                                                  Say(lang, "Count"), Say(lang, "Code"), Say(lang, "Remark")});
    for (const CentreRow& row : rows)
        html += "<tr><td>" + systemOf(lang, row.secondary) + "</td><td>" + HtmlEscape(row.name) + "</td><td>" +
                HtmlEscape(row.model) + "</td><td class=\"number\">" + HtmlEscape(row.count) + "</td><td>" +
                HtmlEscape(row.code) + "</td><td>" + HtmlEscape(row.remark) + "</td></tr>";
    return scrolling(html + "</table>");
}

std::string treeList(WebLanguage lang, const std::vector<CentreNode>& nodes, long long parent, long long projectId) {
    std::string html;
    for (const CentreNode& node : nodes) {
        if (node.parentId != parent) continue;
        const bool device = HMIsDeviceType(node.type);
        html += "<li>" + (device ? link(deviceHref(projectId, node.id), HtmlEscape(node.name)) : HtmlEscape(node.name));
        html += " <span class=\"kind\">" + Say(lang, device ? "device" : "sub-project") + " " + HtmlEscape(node.cirNo) + "</span>";
        const std::string children = treeList(lang, nodes, node.id, projectId);
        if (!children.empty()) html += "<ul>" + children + "</ul>";
        html += "</li>";
    }
    return html;
}

int revisionParam(const httplib::Request& request, const char* name, int fallback) {
    const std::string text = request.get_param_value(name);
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return fallback;
    return std::stoi(text);
}

std::string revisionChoice(const char* name, const std::vector<CentreRevision>& revisions, int chosen) {
    std::string html = "<select name=\"" + std::string(name) + "\" id=\"" + name + "\">";
    for (const CentreRevision& revision : revisions) {
        const std::string number = std::to_string(revision.number);
        html += "<option value=\"" + number + "\"" + (revision.number == chosen ? " selected" : "") + ">" + number + "</option>";
    }
    return html + "</select>";
}

void projectsPage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations& centre,
                  ICentreStore&) {
    const WebLanguage lang = languageOf(request);
    const auto projects = centre.Projects(who);
    std::string body = "<p>" + Say(lang, "Enterprise %1, user %2.", HtmlEscape(who.enterprise), HtmlEscape(who.user)) + "</p>";
    if (projects.empty()) body += "<p class=\"empty\">" + Say(lang, "Your enterprise has no project yet.") + "</p>";
    else {
        std::string table = "<table id=\"projects\">" + headings({Say(lang, "Project"), Say(lang, "ID"), Say(lang, "Created")});
        for (const CentreProject& project : projects)
            table += "<tr><td>" + link(projectHref(project.id), HtmlEscape(project.name)) + "</td><td class=\"number\">" +
                     std::to_string(project.id) + "</td><td>" + HtmlEscape(project.created) + "</td></tr>";
        body += scrolling(table + "</table>");
    }
    sendPage(response, 200, HtmlPage(lang, Say(lang, "Projects"), "", body, true));
}

void projectPage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations&,
                 ICentreStore& store) {
    const long long id = PathId(request.matches[1]);
    CentreTransaction transaction(store, CentreTransaction::Mode::Read);
    const auto project = store.project(id);
    if (!project || project->enterprise != who.enterprise) throw CNotFound();
    const WebLanguage lang = languageOf(request);
    const std::string tree = treeList(lang, store.nodes(id), 0, id);
    transaction.commit();
    const std::string body = tree.empty() ? "<p class=\"empty\">" + Say(lang, "The project has no sub-projects or devices.") + "</p>"
                                          : "<ul class=\"tree\" id=\"tree\">" + tree + "</ul>";
    sendPage(response, 200, HtmlPage(lang, project->name.ToUtf8(), link("/projects", Say(lang, "Projects")), body, true));
}

std::string deviceTrail(WebLanguage lang, const DeviceHistory& history) {
    return link("/projects", Say(lang, "Projects")) + " › " + link(projectHref(history.project.id), HtmlEscape(history.project.name));
}

// What the device is: its cabinet's number, name, model and size.
std::string cabinetFacts(WebLanguage lang, const CentreNode& device) {
    std::string html = "<dl class=\"cabinet\" id=\"cabinet\">";
    for (const auto& [word, value] : {std::pair{"Cabinet", &device.cirNo}, std::pair{"Name", &device.cirName},
                                      std::pair{"Model", &device.cirType}, std::pair{"Size", &device.cirSize}})
        html += "<dt>" + Say(lang, word) + "</dt><dd>" + HtmlEscape(*value) + "</dd>";
    return html + "</dl>";
}

void devicePage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations&,
                ICentreStore& store) {
    const auto history = ReadDeviceHistory(store, who, PathId(request.matches[1]), PathId(request.matches[2]));
    if (!history) throw CNotFound();
    const WebLanguage lang = languageOf(request);
    const int latest = history->revisions.empty() ? 0 : history->revisions.back().number;
    const int shown = revisionParam(request, "revision", latest);
    std::string body = cabinetFacts(lang, history->device);
    if (history->revisions.empty()) body += "<p class=\"empty\">" + Say(lang, "The device has no revision yet.") + "</p>";
    else {
        std::string table = "<table id=\"revisions\">" + headings({Say(lang, "Revision"), Say(lang, "Made by"),
                                                                          Say(lang, "Operation"), Say(lang, "Submitted")});
        for (const CentreRevision& revision : history->revisions) {
            const std::string number = std::to_string(revision.number);
            table += std::string("<tr") + (revision.number == shown ? " class=\"current\"" : "") + "><td>" +
                    link(deviceHref(history->project.id, history->device.id) + "?revision=" + number, number) + "</td><td>" +
                    HtmlEscape(revision.user) + "</td><td>" + HtmlEscape(revision.kind) + "</td><td>" +
                    HtmlEscape(revision.submitted) + "</td></tr>";
        }
        body += scrolling(table + "</table>");
        const auto rows = ReadRevisionRows(store, *history, shown);
        if (!rows) throw CNotFound();
        body += "<h2 id=\"shown\">" + Say(lang, "Rows of revision %1", std::to_string(shown)) + "</h2>" + rowsTable(lang, *rows);
        body += "<form class=\"compare\" method=\"get\" action=\"" + deviceHref(history->project.id, history->device.id) + "/compare\">" +
                Say(lang, "Compare revision %1 with %2", revisionChoice("from", history->revisions, std::max(1, latest - 1)),
                    revisionChoice("to", history->revisions, latest)) +
                " <button id=\"compare\" type=\"submit\">" + Say(lang, "Compare") + "</button></form>";
    }
    sendPage(response, 200, HtmlPage(lang, history->device.name.ToUtf8(), deviceTrail(lang, *history), body, true));
}

void comparePage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations&,
                 ICentreStore& store) {
    const auto history = ReadDeviceHistory(store, who, PathId(request.matches[1]), PathId(request.matches[2]));
    if (!history) throw CNotFound();
    const int from = revisionParam(request, "from", 0);
    const int to = revisionParam(request, "to", 0);
    const auto older = ReadRevisionRows(store, *history, from);
    const auto newer = ReadRevisionRows(store, *history, to);
    if (!older || !newer) throw CNotFound();
    const auto differences = CompareRows(*older, *newer);
    const WebLanguage lang = languageOf(request);
    const std::string fromText = std::to_string(from), toText = std::to_string(to);
    std::string body = "<p>" + Say(lang, "Revision %1 against revision %2.", fromText, toText) + "</p>";
    if (differences.empty()) body += "<p class=\"empty\" id=\"same\">" + Say(lang, "The two revisions hold the same parts.") + "</p>";
    else {
        std::string table = "<table id=\"differences\">" +
                            headings({Say(lang, "Change"), Say(lang, "System"), Say(lang, "Name"), Say(lang, "Model"),
                                            Say(lang, "Count in %1", fromText), Say(lang, "Count in %1", toText)});
        for (const RowDifference& d : differences) {
            const char* change = d.change == RowChange::Added ? "added" : d.change == RowChange::Removed ? "removed" : "count";
            const char* words = d.change == RowChange::Added ? "added" : d.change == RowChange::Removed ? "removed" : "count changed";
            table += std::string("<tr class=\"") + change + "\"><td>" + Say(lang, words) + "</td><td>" + systemOf(lang, d.secondary) +
                     "</td><td>" + HtmlEscape(d.name) + "</td><td>" + HtmlEscape(d.model) + "</td><td class=\"number\">" +
                     std::to_string(d.centreCount) + "</td><td class=\"number\">" + std::to_string(d.localCount) + "</td></tr>";
        }
        body += scrolling(table + "</table>");
    }
    const std::string trail = deviceTrail(lang, *history) + " › " +
                              link(deviceHref(history->project.id, history->device.id), HtmlEscape(history->device.name));
    sendPage(response, 200, HtmlPage(lang, Say(lang, "Comparison of %1", history->device.name.ToUtf8()), trail, body, true));
}

} // namespace

void RegisterWebView(httplib::Server& server, ServerContext& context) {
    server.Get("/style.css", [](const httplib::Request&, httplib::Response& response) {
        response.set_content(kWebStyleSheet, "text/css; charset=utf-8");
    });
    for (const char* icon : {"/favicon.svg", "/favicon.ico"})
        server.Get(icon, [](const httplib::Request&, httplib::Response& response) {
            response.set_header("Cache-Control", "max-age=86400");
            response.set_content(kWebIcon, "image/svg+xml");
        });
    server.Get("/", [&context](const httplib::Request& request, httplib::Response& response) {
        bool known = false;
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            known = context.sessions.use(store, cookieToken(request)).has_value();
        });
        if (known) return redirect(response, "/projects");
        sendPage(response, 200, loginPage(languageOf(request), ""));
    });
    server.Post("/login", [&context](const httplib::Request& request, httplib::Response& response) {
        const WebLanguage lang = languageOf(request);
        CString enterprise, user, credential;
        try {
            enterprise = RequestText(request, "enterprise");
            user = RequestText(request, "user");
            credential = RequestText(request, "credential");
        } catch (const CCentreJsonError&) {
            return sendPage(response, 400, loginPage(lang, Say(lang, "A text holding a NUL character is refused.")));
        }
        if (enterprise.IsEmpty() || user.IsEmpty() || credential.IsEmpty())
            return sendPage(response, 400, loginPage(lang, Say(lang, "Give the enterprise, the user and the credential."), enterprise, user));
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            const LoginAnswer answer = LogIn(context, store, request, {enterprise, user}, credential);
            if (answer.outcome == LoginAnswer::Outcome::Throttled)
                return sendPage(response, 429, loginPage(lang, Say(lang, "Too many wrong credentials: try again in %1 s.",
                                                                   std::to_string(answer.wait.count())), enterprise, user));
            if (answer.outcome == LoginAnswer::Outcome::Refused)
                return sendPage(response, 401, loginPage(lang, Say(lang, "The credential does not match this enterprise and user."), enterprise, user));
            response.set_header("Set-Cookie", std::string(kCookie) + "=" + answer.token + "; Path=/; HttpOnly; SameSite=Strict" +
                                                  (context.clientOverTls(request) ? "; Secure" : ""));
            redirect(response, "/projects");
        });
    });
    // Logging out ends the session on the server: the token opens nothing afterwards, wherever it was kept.
    server.Post("/logout", [&context](const httplib::Request& request, httplib::Response& response) {
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            if (const std::string token = cookieToken(request); !token.empty()) context.sessions.close(store, token);
            response.set_header("Set-Cookie", std::string(kCookie) + "=; Path=/; Max-Age=0; HttpOnly; SameSite=Strict");
            redirect(response, "/");
        });
    });
    server.Get("/projects", page(context, projectsPage));
    server.Get(R"(/projects/(\d+))", page(context, projectPage));
    server.Get(R"(/projects/(\d+)/devices/(\d+))", page(context, devicePage));
    server.Get(R"(/projects/(\d+)/devices/(\d+)/compare)", page(context, comparePage));
}
