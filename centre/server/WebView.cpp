// The web view: after a login, the enterprise's projects, a project's tree, a device's rows by revision
// and the comparison of two revisions. Plain HTML made here; the session token rides in a cookie that
// scripts cannot read and other sites do not send.
#include "centre/server/RevisionHistory.h"
#include "centre/server/ServerContext.h"
#include "centre/server/WebHtml.h"

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
std::string loginPage(const std::string& error, const CString& enterprise = {}, const CString& user = {}) {
    std::string body;
    if (!error.empty()) body += "<p class=\"error\" id=\"error\">" + HtmlEscape(error) + "</p>";
    body += "<form class=\"login\" method=\"post\" action=\"/login\">"
            "<label for=\"enterprise\">Enterprise</label><input id=\"enterprise\" name=\"enterprise\" value=\"" +
            HtmlEscape(enterprise) + "\" required>"
            "<label for=\"user\">User</label><input id=\"user\" name=\"user\" value=\"" + HtmlEscape(user) + "\" required>"
            "<label for=\"credential\">Credential</label><input id=\"credential\" name=\"credential\" type=\"password\" required>"
            "<button id=\"login\" type=\"submit\">Log in</button></form>";
    return HtmlPage("Log in", "", body, false);
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
        if (response.status == 503) sendPage(response, 503, HtmlPage("Not available", "", "<p>" + HtmlEscape(std::string(kStoreUnavailable)) + "</p>", false));
        if (response.status == 404) sendPage(response, 404, HtmlPage("Not found", link("/projects", "Projects"),
                                                                     "<p>Your enterprise has no such project or device.</p>", true));
    };
}

std::string rowsTable(const std::vector<CentreRow>& rows) {
    if (rows.empty()) return "<p class=\"empty\">This revision has no rows.</p>";
    std::string html = "<table class=\"rows\"><tr><th>System</th><th>Name</th><th>Model</th><th>Count</th><th>Code</th>"
                       "<th>Remark</th></tr>";
    for (const CentreRow& row : rows)
        html += "<tr><td>" + std::string(row.secondary ? "secondary" : "primary") + "</td><td>" + HtmlEscape(row.name) +
                "</td><td>" + HtmlEscape(row.model) + "</td><td class=\"number\">" + HtmlEscape(row.count) + "</td><td>" +
                HtmlEscape(row.code) + "</td><td>" + HtmlEscape(row.remark) + "</td></tr>";
    return html + "</table>";
}

std::string treeList(const std::vector<CentreNode>& nodes, long long parent, long long projectId) {
    std::string html;
    for (const CentreNode& node : nodes) {
        if (node.parentId != parent) continue;
        const bool device = HMIsDeviceType(node.type);
        html += "<li>" + (device ? link(deviceHref(projectId, node.id), HtmlEscape(node.name)) : HtmlEscape(node.name));
        html += " <span class=\"kind\">" + std::string(device ? "device " : "sub-project ") + HtmlEscape(node.cirNo) + "</span>";
        const std::string children = treeList(nodes, node.id, projectId);
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

void projectsPage(const CentreUser& who, const httplib::Request&, httplib::Response& response, CBomCentreOperations& centre,
                  ICentreStore&) {
    const auto projects = centre.Projects(who);
    std::string body = "<p>Enterprise " + HtmlEscape(who.enterprise) + ", user " + HtmlEscape(who.user) + ".</p>";
    if (projects.empty()) body += "<p class=\"empty\">Your enterprise has no project yet.</p>";
    else {
        body += "<table id=\"projects\"><tr><th>Project</th><th>ID</th><th>Created</th></tr>";
        for (const CentreProject& project : projects)
            body += "<tr><td>" + link(projectHref(project.id), HtmlEscape(project.name)) + "</td><td class=\"number\">" +
                    std::to_string(project.id) + "</td><td>" + HtmlEscape(project.created) + "</td></tr>";
        body += "</table>";
    }
    sendPage(response, 200, HtmlPage("Projects", "", body, true));
}

void projectPage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations&,
                 ICentreStore& store) {
    const long long id = PathId(request.matches[1]);
    CentreTransaction transaction(store, CentreTransaction::Mode::Read);
    const auto project = store.project(id);
    if (!project || project->enterprise != who.enterprise) throw CNotFound();
    const std::string tree = treeList(store.nodes(id), 0, id);
    transaction.commit();
    const std::string body = tree.empty() ? "<p class=\"empty\">The project has no sub-projects or devices.</p>"
                                          : "<ul class=\"tree\" id=\"tree\">" + tree + "</ul>";
    sendPage(response, 200, HtmlPage(project->name.ToUtf8(), link("/projects", "Projects"), body, true));
}

std::string deviceTrail(const DeviceHistory& history) {
    return link("/projects", "Projects") + " › " + link(projectHref(history.project.id), HtmlEscape(history.project.name));
}

void devicePage(const CentreUser& who, const httplib::Request& request, httplib::Response& response, CBomCentreOperations&,
                ICentreStore& store) {
    const auto history = ReadDeviceHistory(store, who, PathId(request.matches[1]), PathId(request.matches[2]));
    if (!history) throw CNotFound();
    const int latest = history->revisions.empty() ? 0 : history->revisions.back().number;
    const int shown = revisionParam(request, "revision", latest);
    std::string body;
    if (history->revisions.empty()) body = "<p class=\"empty\">The device has no revision yet.</p>";
    else {
        body += "<table id=\"revisions\"><tr><th>Revision</th><th>Made by</th><th>Operation</th><th>Submitted</th></tr>";
        for (const CentreRevision& revision : history->revisions) {
            const std::string number = std::to_string(revision.number);
            body += std::string("<tr") + (revision.number == shown ? " class=\"current\"" : "") + "><td>" +
                    link(deviceHref(history->project.id, history->device.id) + "?revision=" + number, number) + "</td><td>" +
                    HtmlEscape(revision.user) + "</td><td>" + HtmlEscape(revision.kind) + "</td><td>" +
                    HtmlEscape(revision.submitted) + "</td></tr>";
        }
        body += "</table>";
        const auto rows = ReadRevisionRows(store, *history, shown);
        if (!rows) throw CNotFound();
        body += "<h2 id=\"shown\">Rows of revision " + std::to_string(shown) + "</h2>" + rowsTable(*rows);
        body += "<form class=\"compare\" method=\"get\" action=\"" + deviceHref(history->project.id, history->device.id) +
                "/compare\">Compare revision " + revisionChoice("from", history->revisions, std::max(1, latest - 1)) +
                " with " + revisionChoice("to", history->revisions, latest) +
                " <button id=\"compare\" type=\"submit\">Compare</button></form>";
    }
    sendPage(response, 200, HtmlPage(history->device.name.ToUtf8(), deviceTrail(*history), body, true));
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
    std::string body = "<p>Revision " + std::to_string(from) + " against revision " + std::to_string(to) + ".</p>";
    if (differences.empty()) body += "<p class=\"empty\" id=\"same\">The two revisions hold the same parts.</p>";
    else {
        body += "<table id=\"differences\"><tr><th>Change</th><th>System</th><th>Name</th><th>Model</th>"
                "<th>Count in " + std::to_string(from) + "</th><th>Count in " + std::to_string(to) + "</th></tr>";
        for (const RowDifference& d : differences) {
            const char* change = d.change == RowChange::Added ? "added" : d.change == RowChange::Removed ? "removed" : "count";
            const char* words = d.change == RowChange::Added ? "added" : d.change == RowChange::Removed ? "removed" : "count changed";
            body += std::string("<tr class=\"") + change + "\"><td>" + words + "</td><td>" + (d.secondary ? "secondary" : "primary") +
                    "</td><td>" + HtmlEscape(d.name) + "</td><td>" + HtmlEscape(d.model) + "</td><td class=\"number\">" +
                    std::to_string(d.centreCount) + "</td><td class=\"number\">" + std::to_string(d.localCount) + "</td></tr>";
        }
        body += "</table>";
    }
    const std::string trail = deviceTrail(*history) + " › " +
                              link(deviceHref(history->project.id, history->device.id), HtmlEscape(history->device.name));
    sendPage(response, 200, HtmlPage("Comparison of " + history->device.name.ToUtf8(), trail, body, true));
}

} // namespace

void RegisterWebView(httplib::Server& server, ServerContext& context) {
    server.Get("/style.css", [](const httplib::Request&, httplib::Response& response) {
        response.set_content(kWebStyleSheet, "text/css; charset=utf-8");
    });
    server.Get("/", [&context](const httplib::Request& request, httplib::Response& response) {
        bool known = false;
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            known = context.sessions.use(store, cookieToken(request)).has_value();
        });
        if (known) return redirect(response, "/projects");
        sendPage(response, 200, loginPage(""));
    });
    server.Post("/login", [&context](const httplib::Request& request, httplib::Response& response) {
        CString enterprise, user, credential;
        try {
            enterprise = RequestText(request, "enterprise");
            user = RequestText(request, "user");
            credential = RequestText(request, "credential");
        } catch (const CCentreJsonError&) {
            return sendPage(response, 400, loginPage("A text holding a NUL character is refused."));
        }
        if (enterprise.IsEmpty() || user.IsEmpty() || credential.IsEmpty())
            return sendPage(response, 400, loginPage("Give the enterprise, the user and the credential.", enterprise, user));
        RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
            const LoginAnswer answer = LogIn(context, store, request, {enterprise, user}, credential);
            if (answer.outcome == LoginAnswer::Outcome::Throttled)
                return sendPage(response, 429, loginPage("Too many wrong credentials: try again in " + std::to_string(answer.wait.count()) +
                                                             " s.", enterprise, user));
            if (answer.outcome == LoginAnswer::Outcome::Refused)
                return sendPage(response, 401, loginPage("The credential does not match this enterprise and user.", enterprise, user));
            response.set_header("Set-Cookie", std::string(kCookie) + "=" + answer.token + "; Path=/; HttpOnly; SameSite=Strict" +
                                                  (context.tls ? "; Secure" : ""));
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
