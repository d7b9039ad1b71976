// The IDs the centre gives projects and nodes.
#include "centre/operations/CentreIds.h"

#include <string>

CString FormatCentreId(long long id) { return CString(std::to_string(id)); }

std::optional<long long> ParseCentreId(const CString& text) {
    // Eighteen digits always fit a 64-bit key.
    const int length = text.GetLength();
    if (length == 0 || length > 18 || text[0] == u'0') return std::nullopt;
    long long id = 0;
    for (const char16_t ch : text.view()) {
        if (ch < u'0' || ch > u'9') return std::nullopt;
        id = id * 10 + (ch - u'0');
    }
    return id;
}
