#include "centre/server/RequestLimits.h"

size_t BodyLimit(const std::string& method, const std::string& path, size_t largest) {
    if (method != "POST") return 0;
    if (path == "/api/login" || path == "/login") return 4 << 10;
    if (path == "/api/logout" || path == "/logout") return 1 << 10;
    if (path == "/api/usage") return 1 << 20;
    if (path.starts_with("/api/submit-") || path == "/api/compare") return largest;
    return 0;
}

bool NeedsBearer(const std::string& path) {
    return path.starts_with("/api/") && path != "/api/login" && path != "/api/logout";
}

std::string LogSafe(const std::string& text) {
    static const char* hex = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x21 || byte == 0x7f || c == '\\') out += {'\\', 'x', hex[byte >> 4], hex[byte & 15]};
        else out += c;
    }
    return out;
}
