// Plain sockets on 127.0.0.1 for the servers and clients that tests and fuzzing harnesses write themselves:
// a listener on a free port, a connection to one, and whole messages sent and received.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace loopback {

// A socket listening on a free port of 127.0.0.1, its port in `port`; -1 when none could be made.
inline int Listen(int& port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    const int yes = 1;
    ::setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || ::listen(fd, 8) != 0 ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        ::close(fd);
        return -1;
    }
    port = ntohs(address.sin_port);
    return fd;
}

// A connection to the port of 127.0.0.1; -1 when it is refused.
inline int Connect(int port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
    if (fd >= 0) ::close(fd);
    return -1;
}

inline bool Readable(int fd, int waitMs) {
    pollfd entry{fd, POLLIN, 0};
    return ::poll(&entry, 1, waitMs) > 0;
}

inline void SendAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
}

// What arrives until the other side closes, or stays quiet for `waitMs`.
inline std::string ReceiveAll(int fd, int waitMs) {
    std::string bytes;
    char buffer[4096];
    while (Readable(fd, waitMs)) {
        const ssize_t got = ::recv(fd, buffer, sizeof buffer, 0);
        if (got <= 0) break;
        bytes.append(buffer, static_cast<size_t>(got));
    }
    return bytes;
}

} // namespace loopback
