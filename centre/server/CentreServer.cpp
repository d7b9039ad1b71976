// hexmoord's server: routes, limits, the request log, and TLS.
#include "centre/server/CentreServer.h"

#include "centre/server/HeaderWatchdog.h"
#include "centre/server/RequestLimits.h"
#include "centre/server/ServerContext.h"

#include <algorithm>
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

bool hasNul(const httplib::Request& request) {
    if (request.path.find('\0') != std::string::npos) return true;
    return std::any_of(request.params.begin(), request.params.end(), [](const auto& param) {
        return param.first.find('\0') != std::string::npos || param.second.find('\0') != std::string::npos;
    });
}

std::string utcNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

// Pages and answers are never framed, sniffed or made to load anything from elsewhere.
httplib::Headers securityHeaders() {
    return {{"Content-Security-Policy",
             "default-src 'none'; style-src 'self'; img-src 'self'; form-action 'self'; frame-ancestors 'none'; base-uri 'none'"},
            {"X-Frame-Options", "DENY"},
            {"X-Content-Type-Options", "nosniff"},
            {"Referrer-Policy", "same-origin"}};
}

// A refusal sent before the body was read: the connection closes, so the unread body is never taken for
// the next request.
httplib::Server::HandlerResponse refuse(httplib::Response& response, int status, const std::string& message) {
    SendError(response, status, message);
    response.set_header("Connection", "close");
    return httplib::Server::HandlerResponse::Handled;
}

} // namespace

struct CCentreServer::Impl {
    explicit Impl(CentreServerOptions chosen)
        : options(std::move(chosen)), pool(CentreStoreOpener(options.database, options.timeouts)), sessions(options.sessionIdleLimit),
          context{pool, sessions, throttle, !options.tlsCertificate.empty(),
                  [this](const std::string& line) { log(line); }, options.trustedProxies} {}

    void log(const std::string& line) {
        if (!options.log) return;
        const std::lock_guard lock(logMutex);
        std::fprintf(options.log, "%s %s\n", utcNow().c_str(), line.c_str());
        std::fflush(options.log);
    }

    // What is refused before the body is read: "..", NUL, bodies over the route's bound, and API bodies
    // without a valid token.
    httplib::Server::HandlerResponse screen(const httplib::Request& request, httplib::Response& response) {
        if (watchdog) watchdog->headersComplete(request.remote_addr, request.remote_port);
        if (hasParentSegment(request.path)) return refuse(response, 400, "paths with \"..\" are refused");
        if (hasNul(request)) return refuse(response, 400, "a text holding a NUL character is refused");
        const size_t limit = BodyLimit(request.method, request.path, options.maxBodyBytes);
        const bool chunked = request.get_header_value("Transfer-Encoding").find("chunked") != std::string::npos;
        if (chunked && limit > 0) return refuse(response, 411, "a body needs a Content-Length");
        const std::string length = request.get_header_value("Content-Length");
        if (chunked || (!length.empty() && (length.size() > 12 || std::stoull("0" + length) > limit)))
            return refuse(response, 413, "the body is larger than " + std::to_string(limit) + " bytes, which this request may bring");
        if (limit > (64u << 10) && NeedsBearer(request.path)) {
            const std::string header = request.get_header_value("Authorization");
            bool known = false;
            RunWithStore(context, response, [&](CBomCentreOperations&, ICentreStore& store) {
                known = header.starts_with("Bearer ") && sessions.use(store, header.substr(7)).has_value();
            });
            if (response.status == 503) {
                response.set_header("Connection", "close");
                return httplib::Server::HandlerResponse::Handled;
            }
            if (!known) return refuse(response, 401, "log in first: the session token is missing, unknown or lapsed");
        }
        return httplib::Server::HandlerResponse::Unhandled;
    }

    CentreServerOptions options;
    CStorePool pool;
    CSessionTable sessions;
    CLoginThrottle throttle;
    ServerContext context;
    std::unique_ptr<httplib::Server> http;
    std::unique_ptr<CHeaderWatchdog> watchdog;
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
    // Each read of a request waits at most the header time; the watchdog bounds a whole header.
    http.set_read_timeout(impl.options.headerTimeout);
    // An idle kept-alive connection holds a worker and delays a stop: it is closed soon.
    http.set_keep_alive_timeout(1);
    // Replies go out at once rather than waiting on the client's delayed acknowledgement.
    http.set_tcp_nodelay(true);
    // Workers enough that slow clients do not take them all while the watchdog gives up on them.
    http.new_task_queue = [] { return new httplib::ThreadPool(32); };
    http.set_default_headers(securityHeaders());
    http.set_pre_routing_handler([&impl](const httplib::Request& request, httplib::Response& response) {
        return impl.screen(request, response);
    });
    http.set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) SendError(response, response.status, "request refused with status " + std::to_string(response.status));
    });
    http.set_exception_handler([&impl](const httplib::Request&, httplib::Response& response, std::exception_ptr error) {
        try {
            if (error) std::rethrow_exception(error);
        } catch (const std::exception& thrown) {
            impl.log(std::string("request failed: ") + LogSafe(thrown.what()));
        } catch (...) {
        }
        SendError(response, 500, "the server failed on this request; it keeps serving");
    });
    http.set_logger([&impl](const httplib::Request& request, const httplib::Response& response) {
        if (impl.watchdog) impl.watchdog->responded(request.remote_addr, request.remote_port);
        impl.log(LogSafe(impl.context.clientAddress(request)) + " " + LogSafe(request.method) + " " + LogSafe(request.path) +
                 " " + std::to_string(response.status) + " " + std::to_string(response.body.size()));
    });
    RegisterCentreApi(http, impl.context);
    RegisterWebView(http, impl.context);
}

CCentreServer::~CCentreServer() = default;

int CCentreServer::bind(const std::string& host, int port) {
    const int bound = port == 0 ? m_impl->http->bind_to_any_port(host) : (m_impl->http->bind_to_port(host, port) ? port : 0);
    if (bound > 0) m_impl->watchdog = std::make_unique<CHeaderWatchdog>(bound, m_impl->options.headerTimeout);
    return bound > 0 ? bound : 0;
}

bool CCentreServer::serve() { return m_impl->http->listen_after_bind(); }

void CCentreServer::stop() { m_impl->http->stop(); }

bool CCentreServer::tls() const { return !m_impl->options.tlsCertificate.empty(); }

std::string ServerContext::clientAddress(const httplib::Request& request) const {
    const std::string forwarded = request.get_header_value("X-Forwarded-For");
    if (forwarded.empty() || std::find(trustedProxies.begin(), trustedProxies.end(), request.remote_addr) == trustedProxies.end())
        return request.remote_addr;
    // The proxy appends the address it saw; what comes before it came from the client and proves nothing.
    std::string last = forwarded.substr(forwarded.rfind(',') == std::string::npos ? 0 : forwarded.rfind(',') + 1);
    last.erase(0, last.find_first_not_of(' '));
    last.erase(last.find_last_not_of(' ') + 1);
    return last.empty() ? request.remote_addr : last;
}

bool ServerContext::clientOverTls(const httplib::Request& request) const {
    if (tls) return true;
    const bool trusted = std::find(trustedProxies.begin(), trustedProxies.end(), request.remote_addr) != trustedProxies.end();
    return trusted && request.get_header_value("X-Forwarded-Proto") == "https";
}
