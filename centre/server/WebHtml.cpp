#include "centre/server/WebHtml.h"

std::string HtmlEscape(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        default: out += c;
        }
    }
    return out;
}

std::string HtmlPage(WebLanguage language, const std::string& title, const std::string& trail, const std::string& body, bool loggedIn) {
    const std::string brand = Say(language, "Hexmoor BOM centre");
    std::string page = "<!DOCTYPE html>\n<html lang=\"" + std::string(LanguageTag(language)) + "\"><head><meta charset=\"utf-8\">"
                       "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                       "<title>" + HtmlEscape(title) + " · " + brand + "</title>"
                       "<link rel=\"icon\" href=\"/favicon.svg\" type=\"image/svg+xml\">"
                       "<link rel=\"stylesheet\" href=\"/style.css\"></head><body>"
                       "<header><span class=\"brand\">" + brand + "</span>";
    if (loggedIn) page += "<form method=\"post\" action=\"/logout\"><button id=\"logout\">" + Say(language, "Log out") + "</button></form>";
    page += "</header><main>";
    if (!trail.empty()) page += "<nav class=\"trail\">" + trail + "</nav>";
    page += "<h1>" + HtmlEscape(title) + "</h1>" + body + "</main></body></html>\n";
    return page;
}

const char* const kWebStyleSheet = R"css(
body { margin: 0; font: 15px/1.45 system-ui, "Noto Sans CJK SC", "WenQuanYi Zen Hei", sans-serif; color: #1d2733; background: #f4f6f8; }
header { display: flex; justify-content: space-between; align-items: center; padding: 0.6em 2em;
         background: #23384f; color: #fff; }
header .brand { font-weight: 600; letter-spacing: 0.02em; }
header button { background: none; border: 1px solid #9fb3c8; color: #fff; border-radius: 4px; padding: 0.2em 0.8em; }
main { max-width: 72em; margin: 1.5em auto; padding: 0 2em; }
h1 { font-size: 1.4em; margin: 0.4em 0 0.8em; }
nav.trail { font-size: 0.9em; color: #5a6b7d; }
nav.trail a { color: #2b6cb0; }
table { border-collapse: collapse; width: 100%; background: #fff; box-shadow: 0 1px 2px #0002; margin-bottom: 1.5em; }
th, td { text-align: left; padding: 0.4em 0.8em; border-bottom: 1px solid #e3e8ee; }
th { background: #e9eef4; font-weight: 600; }
td.number { text-align: right; font-variant-numeric: tabular-nums; }
tr.added td { background: #e6f6ea; }
tr.removed td { background: #fbe9e9; }
tr.count td { background: #fff6dd; }
ul.tree, ul.tree ul { list-style: none; padding-left: 1.4em; }
ul.tree li { margin: 0.2em 0; }
.kind { font-size: 0.8em; color: #5a6b7d; }
.current { font-weight: 600; }
form.login { background: #fff; max-width: 22em; padding: 1.2em 1.5em; box-shadow: 0 1px 2px #0002; }
form.login label { display: block; margin: 0.6em 0 0.2em; }
form.login input { width: 100%; box-sizing: border-box; padding: 0.35em; }
form.login button, form.compare button { margin-top: 1em; padding: 0.35em 1.2em; }
p.error { color: #a02323; }
p.empty { color: #5a6b7d; font-style: italic; }
div.scroll { overflow-x: auto; margin-bottom: 1.5em; }
div.scroll table { margin-bottom: 0; }
td { overflow-wrap: anywhere; }
dl.cabinet { display: grid; grid-template-columns: max-content 1fr; gap: 0.2em 1em; margin: 0 0 1.2em; }
dl.cabinet dt { color: #5a6b7d; }
dl.cabinet dd { margin: 0; }
@media (max-width: 600px) {
  header { padding: 0.5em 0.8em; }
  main { padding: 0 0.8em; margin-top: 1em; }
  th, td { padding: 0.3em 0.4em; }
  body { font-size: 14px; }
}
)css";

const char* const kWebIcon = R"svg(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 32 32">
<rect width="32" height="32" rx="6" fill="#23384f"/>
<rect x="7" y="6" width="18" height="20" rx="2" fill="none" stroke="#9fb3c8" stroke-width="2"/>
<path d="M11 12h10M11 16h10M11 20h6" stroke="#fff" stroke-width="2" stroke-linecap="round"/>
</svg>
)svg";
