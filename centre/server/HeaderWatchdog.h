// Gives up on connections whose request line and headers do not come within a time limit, however slowly
// they trickle in (the HTTP library only bounds each single read). It looks at the server's accepted
// sockets a few times a second; a connection that has sent no complete header within the limit since it was
// accepted, or since its last answer, is shut down, which frees its worker.
#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

class CHeaderWatchdog {
public:
    CHeaderWatchdog(int listenPort, std::chrono::seconds limit);
    ~CHeaderWatchdog();
    CHeaderWatchdog(const CHeaderWatchdog&) = delete;
    CHeaderWatchdog& operator=(const CHeaderWatchdog&) = delete;

    // The request of this peer has its headers: it is being served, however long that takes.
    void headersComplete(const std::string& address, int port);
    // Its answer went out: the next request's headers are due within the limit (after the keep-alive wait).
    void responded(const std::string& address, int port);

private:
    struct Connection {
        std::chrono::steady_clock::time_point deadline;
        bool serving = false;
        std::chrono::steady_clock::time_point lastSeen;  // by a scan, or told of by the server
    };
    void run();
    void scan();

    const int m_listenPort;
    const std::chrono::seconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopping = false;
    std::map<std::string, Connection> m_connections;  // by "address port"
    std::thread m_thread;
};
