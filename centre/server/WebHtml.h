// The pieces the web view's pages are made of: escaping, the frame of a page, its style sheet.
#pragma once

#include "centre/server/WebText.h"
#include "support/CString.h"

#include <string>

// Text for HTML content and attribute values.
std::string HtmlEscape(const std::string& text);
inline std::string HtmlEscape(const CString& text) { return HtmlEscape(text.ToUtf8()); }

// A whole page: title, the trail of links above it (already HTML), the body (already HTML).
std::string HtmlPage(WebLanguage language, const std::string& title, const std::string& trail, const std::string& body, bool loggedIn);

extern const char* const kWebStyleSheet;
// The icon of the centre's pages (SVG).
extern const char* const kWebIcon;
