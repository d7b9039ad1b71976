#include "centre/server/HeaderWatchdog.h"

#include <dirent.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

using Clock = std::chrono::steady_clock;

std::string key(const std::string& address, int port) { return address + " " + std::to_string(port); }

// The local port and the peer of a connected socket, or false for anything else.
bool connectionOf(int fd, int& localPort, std::string& peer) {
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISSOCK(info.st_mode)) return false;
    int listening = 0;
    socklen_t size = sizeof listening;
    if (::getsockopt(fd, SOL_SOCKET, SO_ACCEPTCONN, &listening, &size) != 0 || listening) return false;
    sockaddr_storage local{}, remote{};
    socklen_t localSize = sizeof local, remoteSize = sizeof remote;
    if (::getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localSize) != 0 ||
        ::getpeername(fd, reinterpret_cast<sockaddr*>(&remote), &remoteSize) != 0)
        return false;
    char localHost[NI_MAXHOST], localService[NI_MAXSERV], host[NI_MAXHOST], service[NI_MAXSERV];
    if (::getnameinfo(reinterpret_cast<sockaddr*>(&local), localSize, localHost, sizeof localHost, localService,
                      sizeof localService, NI_NUMERICHOST | NI_NUMERICSERV) != 0 ||
        ::getnameinfo(reinterpret_cast<sockaddr*>(&remote), remoteSize, host, sizeof host, service, sizeof service,
                      NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return false;
    localPort = std::atoi(localService);
    peer = key(host, std::atoi(service));
    return true;
}

} // namespace

CHeaderWatchdog::CHeaderWatchdog(int listenPort, std::chrono::seconds limit)
    : m_listenPort(listenPort), m_limit(limit), m_thread([this] { run(); }) {}

CHeaderWatchdog::~CHeaderWatchdog() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void CHeaderWatchdog::headersComplete(const std::string& address, int port) {
    const std::lock_guard lock(m_mutex);
    Connection& connection = m_connections[key(address, port)];
    connection.serving = true;
    connection.lastSeen = Clock::now();
}

void CHeaderWatchdog::responded(const std::string& address, int port) {
    const std::lock_guard lock(m_mutex);
    // The library waits up to a second for a kept-alive connection's next request.
    const auto now = Clock::now();
    m_connections[key(address, port)] = {now + m_limit + std::chrono::seconds(1), false, now};
}

void CHeaderWatchdog::run() {
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, std::chrono::milliseconds(250), [this] { return m_stopping; })) {
        lock.unlock();
        scan();
        lock.lock();
    }
}

void CHeaderWatchdog::scan() {
    DIR* folder = ::opendir("/proc/self/fd");
    if (!folder) return;
    const auto now = Clock::now();
    while (const dirent* entry = ::readdir(folder)) {
        const int fd = std::atoi(entry->d_name);
        if (fd <= 2 || fd == ::dirfd(folder)) continue;
        int localPort = 0;
        std::string peer;
        if (!connectionOf(fd, localPort, peer) || localPort != m_listenPort) continue;
        std::unique_lock lock(m_mutex);
        const auto [found, added] = m_connections.try_emplace(peer, Connection{now + m_limit, false, now});
        found->second.lastSeen = now;
        if (added || found->second.serving || now < found->second.deadline) continue;
        lock.unlock();
        // Checked again just before: the descriptor must still be this peer's connection.
        std::string again;
        if (connectionOf(fd, localPort, again) && again == peer) ::shutdown(fd, SHUT_RDWR);
    }
    ::closedir(folder);
    const std::lock_guard lock(m_mutex);
    // Closed connections drop out; one the server told of just now may not have been scanned yet.
    std::erase_if(m_connections, [&](const auto& entry) { return now - entry.second.lastSeen > std::chrono::seconds(2); });
}
