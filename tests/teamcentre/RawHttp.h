// Bytes to a server on 127.0.0.1 exactly as a test writes them (a client library would mend them), and
// whatever comes back until the server closes or the wait ends.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace team_test {

class RawConnection {
public:
    explicit RawConnection(int port) : m_fd(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) close();
    }
    ~RawConnection() { close(); }
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    // False when the connection is gone.
    bool send(const std::string& bytes) {
        return m_fd >= 0 && ::send(m_fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
    }
    // What arrives within the wait; `closed` tells whether the server closed the connection.
    std::string receive(std::chrono::milliseconds wait, bool* closed = nullptr) {
        std::string got;
        const auto end = std::chrono::steady_clock::now() + wait;
        bool ended = false;
        while (m_fd >= 0 && !ended) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            if (left.count() <= 0) break;
            pollfd ready{m_fd, POLLIN, 0};
            if (::poll(&ready, 1, static_cast<int>(left.count())) <= 0) break;
            char buffer[4096];
            const ssize_t n = ::recv(m_fd, buffer, sizeof buffer, 0);
            if (n <= 0) ended = true;
            else got.append(buffer, static_cast<size_t>(n));
        }
        if (closed) *closed = ended;
        return got;
    }

private:
    void close() {
        if (m_fd >= 0) ::close(m_fd);
        m_fd = -1;
    }
    int m_fd;
};

} // namespace team_test
