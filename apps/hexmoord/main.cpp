// hexmoord: the BOM centre for a team. It serves the centre's operations as a JSON API and a web view over
// HTTP (HTTPS with --tls-cert and --tls-key), storing in PostgreSQL or, for a quick trial, a SQLite file.
#include "apps/hexmoord/AccountCommand.h"
#include "centre/operations/CentreError.h"
#include "centre/server/CentreServer.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <iostream>
#include <pthread.h>
#include <thread>

namespace {

struct ListenAddress {
    std::string host;
    int port = 0;
};

// "HOST:PORT", "PORT" (on 127.0.0.1) or "[V6]:PORT".
std::optional<ListenAddress> parseListen(const std::string& text) {
    const size_t colon = text.rfind(':');
    std::string host = colon == std::string::npos ? "127.0.0.1" : text.substr(0, colon);
    const std::string port = colon == std::string::npos ? text : text.substr(colon + 1);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
    if (host.empty() || port.empty() || port.size() > 5 || port.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    const int number = std::stoi(port);
    if (number > 65535) return std::nullopt;
    return ListenAddress{host, number};
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"hexmoord: the BOM centre for a team, over HTTP, on PostgreSQL"};
    std::string listen = "127.0.0.1:8585";
    CentreServerOptions options;
    long long idleSeconds = options.sessionIdleLimit.count();
    app.add_option("--listen", listen, "HOST:PORT to serve on (default 127.0.0.1:8585; port 0: a free one, printed)");
    app.add_option("--db", options.database,
                   "a PostgreSQL connection string (postgresql://... or key=value words), or a SQLite file for a trial");
    app.add_option("--tls-cert", options.tlsCertificate, "serve HTTPS with this PEM certificate (needs --tls-key)");
    app.add_option("--tls-key", options.tlsKey, "the PEM private key of --tls-cert");
    app.add_option("--session-idle", idleSeconds, "seconds a session token lives unused (default 8 hours)")
        ->check(CLI::Range(1LL, 365LL * 24 * 60 * 60));
    long long headerSeconds = options.headerTimeout.count();
    app.add_option("--header-timeout", headerSeconds, "seconds a request's line and headers may take (default 5)")
        ->check(CLI::Range(1LL, 300LL));
    app.add_option("--lock-timeout", options.timeouts.lock,
                   "seconds a PostgreSQL statement waits for another writer's lock before the request gets 503 (default 10)")
        ->check(CLI::Range(1, 600));
    app.add_option("--idle-transaction-timeout", options.timeouts.idleInTransaction,
                   "seconds PostgreSQL lets a transaction sit idle before it ends it, so that a frozen server does not "
                   "hold a project for good (default 20)")
        ->check(CLI::Range(1, 600));
    app.add_option("--trusted-proxy", options.trustedProxies,
                   "address of a reverse proxy whose X-Forwarded-For names the client (may be repeated)");
    const auto accountCommand = AddAccountCommand(app);
    CLI11_PARSE(app, argc, argv);
    if (const int status = accountCommand(); status >= 0) return status;
    if (options.database.empty()) {
        std::cerr << "hexmoord: --db is required\n";
        return 2;
    }
    options.sessionIdleLimit = std::chrono::seconds(idleSeconds);
    options.headerTimeout = std::chrono::seconds(headerSeconds);

    const auto address = parseListen(listen);
    if (!address) {
        std::cerr << "hexmoord: --listen wants HOST:PORT, not \"" << listen << "\"\n";
        return 2;
    }

    // SIGTERM and SIGINT are taken by one thread that stops the server, so they never interrupt a request.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGTERM);
    sigaddset(&stopSignals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    std::unique_ptr<CCentreServer> server;
    try {
        server = std::make_unique<CCentreServer>(options);
    } catch (const CCentreError& error) {
        std::cerr << "hexmoord: " << error.message().ToUtf8() << "\n";
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "hexmoord: " << error.what() << "\n";
        return 1;
    }
    const int port = server->bind(address->host, address->port);
    if (port == 0) {
        std::cerr << "hexmoord: cannot listen on " << listen << "\n";
        return 1;
    }
    std::cout << "hexmoord: serving " << (server->tls() ? "https" : "http") << "://" << address->host << ":" << port << "/"
              << std::endl;

    std::thread stopper([&] {
        int signal = 0;
        sigwait(&stopSignals, &signal);
        server->stop();
    });
    const bool served = server->serve();
    // Served to the end: wake the stopper if the server stopped on its own.
    pthread_kill(stopper.native_handle(), SIGTERM);
    stopper.join();
    std::cout << "hexmoord: stopped" << std::endl;
    return served ? 0 : 1;
}
