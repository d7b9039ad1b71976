// The IDs the centre gives projects and nodes: decimal text of a store key, written without leading zeros,
// so that one ID has exactly one spelling.
#pragma once

#include "support/CString.h"

#include <optional>

QX_API CString FormatCentreId(long long id);
// The key an ID names, or nothing for text that is no ID of the centre (empty, signs, spaces, leading
// zeros, too long).
QX_API std::optional<long long> ParseCentreId(const CString& text);
