// The identity of this client on the site.
#include "repository/HostId.h"

#include "support/Format.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <netdb.h>
#include <unistd.h>

namespace {

CString firstIpv4Address(const std::string& hostName) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* found = nullptr;
    if (::getaddrinfo(hostName.c_str(), nullptr, &hints, &found) != 0 || !found) return {};
    const auto* address = reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    const auto* bytes = reinterpret_cast<const unsigned char*>(&address->sin_addr.s_addr);
    const CString text = QxFormat(u"%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
    ::freeaddrinfo(found);
    return text;
}

} // namespace

CString GetHostId() {
    if (const char* chosen = std::getenv("CORVANE_HOST_ID"); chosen && *chosen) return CString::FromUtf8(chosen);
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0) name[0] = '\0';
    return QxFormat(u"%s(%s)", firstIpv4Address(name), CString::FromUtf8(name));
}
