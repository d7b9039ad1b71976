// What a request may bring, judged from its line and headers before its body is read: each route's body is
// bounded by what it needs, so that a login cannot bring megabytes.
#pragma once

#include "support/Export.h"

#include <cstddef>
#include <string>

// The largest body the route takes; `largest` is what a submit may bring.
QX_API size_t BodyLimit(const std::string& method, const std::string& path, size_t largest);

// Whether the route works for a logged-in API user only: its body is not read without a valid token.
QX_API bool NeedsBearer(const std::string& path);

// A line of the request log cannot be forged: control characters, spaces and backslashes are written as
// \xNN, so that one request is always one line of fields.
QX_API std::string LogSafe(const std::string& text);
