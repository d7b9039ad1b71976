// hexmoord's server: the BOM centre's operations as a small JSON API over HTTP (or HTTPS), and the web view
// at "/". Every API request but the login carries a session token ("Authorization: Bearer TOKEN"); the web
// view keeps its token in a cookie. A project of another enterprise is answered as one that does not exist.
// Accounts are made by an administrator (CCentreAccounts); wrong credentials are throttled.
#pragma once

#include "centre/server/StorePool.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

struct CentreServerOptions {
    std::string database;  // what --db names (see CentreStoreOpener)
    PostgresTimeouts timeouts;
    std::string tlsCertificate;
    std::string tlsKey;
    std::chrono::seconds sessionIdleLimit{8 * 60 * 60};
    // The largest body a submit may bring; every other route takes far less. Larger bodies are refused
    // with 413 before they are read.
    size_t maxBodyBytes = 16u << 20;
    // A request whose line and headers are not complete within this time is dropped (a reverse proxy in
    // front buffers requests for the clients that are that slow).
    std::chrono::seconds headerTimeout{5};
    // Addresses of reverse proxies whose X-Forwarded-For names the client (for the log and the login
    // throttle).
    std::vector<std::string> trustedProxies;
    // One line per request, and what the server notices (throttled logins, failing stores); null: none.
    std::FILE* log = stdout;
};

class QX_API CCentreServer {
public:
    // Opens one store to bring its schema up to date; throws CCentreStoreError when that fails, and
    // std::runtime_error when the TLS files cannot be used.
    explicit CCentreServer(CentreServerOptions options);
    ~CCentreServer();
    CCentreServer(const CCentreServer&) = delete;
    CCentreServer& operator=(const CCentreServer&) = delete;

    // Binds host:port (port 0: a free one); returns the port, or 0 when it cannot be bound.
    int bind(const std::string& host, int port);
    // Serves until stop(); false when it could not serve.
    bool serve();
    // Safe from any thread; requests under way are finished first.
    void stop();
    bool tls() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
