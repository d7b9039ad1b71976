// hexmoord's handlers, in the process: a server on a SQLite file in the scratch folder, and each part of
// the input (cut at zero bytes) sent as it stands as one HTTP request: request line, headers and body of
// any API route or web form. "TOKEN" in a request becomes the token of a logged-in session, so that the
// routes behind the login are reached too (a request that logs out is followed by a new login). No request
// may cost the server more than 128 MB of memory.
#include "FuzzSupport.h"

// The server and its account book are the parts of the centre this harness knows of.
#include "centre/operations/CentreAccounts.h"
#include "centre/server/CentreServer.h"
#include "centre/server/StorePool.h"
#include "tests/common/LoopbackSockets.h"

#include <atomic>
#include <sanitizer/allocator_interface.h>
#include <thread>

namespace {

constexpr size_t kMostRequests = 4;
constexpr long long kMostBytesPerRequest = 128LL << 20;
constexpr int kReplyWaitMs = 5000;

// The memory the process holds, counted from when the hooks came (blocks freed that were taken before
// count below zero), and the most it held since the last look.
std::atomic<long long> g_live{0};
std::atomic<long long> g_peak{0};

void countAllocation(const volatile void*, size_t size) {
    const long long live = g_live.fetch_add(static_cast<long long>(size)) + static_cast<long long>(size);
    long long peak = g_peak.load();
    while (live > peak && !g_peak.compare_exchange_weak(peak, live)) {
    }
}

void countRelease(const volatile void* pointer) {
    g_live.fetch_sub(static_cast<long long>(__sanitizer_get_allocated_size(const_cast<const void*>(pointer))));
}

// Sends the bytes and reads the reply until the server closes; gives the reply. An input may claim more
// body than it brings: closing the sending side keeps the server from waiting for the rest. A client that
// has closed its side gets no answer from the route handlers, only the refusals made before them, so the
// harness's own login keeps its side open.
std::string exchange(int port, std::string_view request, bool closeSendingSide = true) {
    const int fd = loopback::Connect(port);
    if (fd < 0) return {};
    loopback::SendAll(fd, request);
    if (closeSendingSide) ::shutdown(fd, SHUT_WR);
    const std::string reply = loopback::ReceiveAll(fd, kReplyWaitMs);
    ::close(fd);
    return reply;
}

class ServerInProcess {
public:
    ServerInProcess() {
        CentreServerOptions options;
        options.database = fuzz::ScratchFolder() + "/centre.db";
        options.log = nullptr;
        // A fresh store knows no account: the harness's own is made before the server opens it.
        CCentreAccounts(*CentreStoreOpener(options.database)()).Add(u"acme", u"harness", u"secret");
        m_server = std::make_unique<CCentreServer>(options);
        m_port = m_server->bind("127.0.0.1", 0);
        m_thread = std::thread([this] { m_server->serve(); });
        // The server may take a moment before it answers the first request.
        for (int attempt = 0; attempt < 50 && m_token.empty(); ++attempt) {
            m_token = loginToken();
            if (m_token.empty()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    ~ServerInProcess() {
        m_server->stop();
        m_thread.join();
    }
    ServerInProcess(const ServerInProcess&) = delete;
    ServerInProcess& operator=(const ServerInProcess&) = delete;

    int port() const { return m_port; }
    const std::string& token() const { return m_token; }
    // After a logout the session is gone: the next inputs get a new one.
    void logInAgain() { m_token = loginToken(); }

private:
    // A session of a user the inputs do not name; empty when the login was refused.
    std::string loginToken() {
        const std::string body = R"({"enterprise":"acme","user":"harness","credential":"secret"})";
        const std::string reply = exchange(m_port, "POST /api/login HTTP/1.1\r\nHost: x\r\nConnection: close\r\n"
                                                   "Content-Type: application/json\r\nContent-Length: " +
                                                       std::to_string(body.size()) + "\r\n\r\n" + body,
                                           false);
        const size_t at = reply.find("\"token\":\"");
        return at == std::string::npos ? std::string() : reply.substr(at + 9, reply.find('"', at + 9) - at - 9);
    }

    std::unique_ptr<CCentreServer> m_server;
    int m_port = 0;
    std::thread m_thread;
    std::string m_token;
};

ServerInProcess& server() {
    static ServerInProcess instance;
    return instance;
}

std::string withToken(std::string_view part) {
    std::string request(part);
    for (size_t at = request.find("TOKEN"); at != std::string::npos; at = request.find("TOKEN", at + server().token().size()))
        request.replace(at, 5, server().token());
    return request;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // Without a session the routes behind the login would never be reached.
    fuzz::Require(!server().token().empty(), "the harness's own login gives a session");
    __sanitizer_install_malloc_and_free_hooks(countAllocation, countRelease);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const std::string_view part : fuzz::SplitSections(data, size, kMostRequests)) {
        if (part.empty()) continue;
        const std::string request = withToken(part);
        const long long before = g_live.load();
        g_peak = before;
        exchange(server().port(), request);
        fuzz::Require(g_peak.load() - before <= kMostBytesPerRequest, "one request costs the server at most 128 MB");
        if (request.find("logout") != std::string::npos) server().logInAgain();
    }
    return 0;
}
