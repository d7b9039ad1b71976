// hexmoord's server: routes, limits, the request log, and TLS.
#include "centre/server/CentreServer.h"

#include "centre/server/ServerContext.h"

#include <ctime>
#include <mutex>
#include <stdexcept>

namespace {

// A path with a ".." segment never names anything here; it is refused before routing.
bool hasParentSegment(const std::string& path) {
    size_t start = 0;
    while (start <= path.size()) {
        const size_t end = std::min(path.find('/', start), path.size());
        if (path.compare(start, end - start, "..") == 0) return true;
        start = end + 1;
    }
    return false;
}

std::string utcNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

} // namespace

struct CCentreServer::Impl {
    explicit Impl(CentreServerOptions chosen)
        : options(std::move(chosen)), pool(CentreStoreOpener(options.database)), sessions(options.sessionIdleLimit),
          context{pool, sessions, !options.tlsCertificate.empty()} {}

    CentreServerOptions options;
    CStorePool pool;
    CSessionTable sessions;
    ServerContext context;
    std::unique_ptr<httplib::Server> http;
    std::mutex logMutex;
};

CCentreServer::CCentreServer(CentreServerOptions options) : m_impl(std::make_unique<Impl>(std::move(options))) {
    Impl& impl = *m_impl;
    // The first store brings the schema up to date before any request comes.
    { auto lease = impl.pool.borrow(); }

    if (impl.options.tlsCertificate.empty() != impl.options.tlsKey.empty())
        throw std::runtime_error("HTTPS needs both --tls-cert and --tls-key");
    if (!impl.options.tlsCertificate.empty()) {
#ifdef CPPHTTPLIB_OPENSSL_SUPPORT
        impl.http = std::make_unique<httplib::SSLServer>(impl.options.tlsCertificate.c_str(), impl.options.tlsKey.c_str());
        if (!impl.http->is_valid()) throw std::runtime_error("the TLS certificate or key cannot be used");
#else
        throw std::runtime_error("this build of cpp-httplib has no OpenSSL support: HTTPS is not available");
#endif
    } else {
        impl.http = std::make_unique<httplib::Server>();
    }
    httplib::Server& http = *impl.http;
    http.set_payload_max_length(impl.options.maxBodyBytes);
    http.set_read_timeout(std::chrono::seconds(30));
    // An idle kept-alive connection holds a worker and delays a stop: it is closed soon.
    http.set_keep_alive_timeout(1);
    // Replies go out at once rather than waiting on the client's delayed acknowledgement.
    http.set_tcp_nodelay(true);
    http.set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
        if (!hasParentSegment(request.path)) return httplib::Server::HandlerResponse::Unhandled;
        SendError(response, 400, "paths with \"..\" are refused");
        return httplib::Server::HandlerResponse::Handled;
    });
    http.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) SendError(response, response.status, "request refused with status " + std::to_string(response.status));
    });
    http.set_exception_handler([](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
        SendError(response, 500, "the server failed on this request; it keeps serving");
    });
    http.set_logger([&impl](const httplib::Request& request, const httplib::Response& response) {
        if (!impl.options.log) return;
        const std::lock_guard lock(impl.logMutex);
        std::fprintf(impl.options.log, "%s %s %s %s %d %zu\n", utcNow().c_str(), request.remote_addr.c_str(),
                     request.method.c_str(), request.path.c_str(), response.status, response.body.size());
        std::fflush(impl.options.log);
    });
    RegisterCentreApi(http, impl.context);
    RegisterWebView(http, impl.context);
}

CCentreServer::~CCentreServer() = default;

int CCentreServer::bind(const std::string& host, int port) {
    if (port == 0) {
        const int bound = m_impl->http->bind_to_any_port(host);
        return bound > 0 ? bound : 0;
    }
    return m_impl->http->bind_to_port(host, port) ? port : 0;
}

bool CCentreServer::serve() { return m_impl->http->listen_after_bind(); }

void CCentreServer::stop() { m_impl->http->stop(); }

bool CCentreServer::tls() const { return !m_impl->options.tlsCertificate.empty(); }
