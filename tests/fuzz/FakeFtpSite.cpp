// The loopback FTP site of the repository harness.
#include "FakeFtpSite.h"

#include "tests/common/LoopbackSockets.h"

#include <algorithm>
#include <netinet/tcp.h>

namespace fuzz {
namespace {

// A client that keeps quiet this long is gone; the client's own stall limit is longer.
constexpr int kWaitMs = 3000;
// Listings are given this deep; deeper folders are empty, so that a folder that lists itself ends.
constexpr int kListedDepth = 2;

// Replies go out at once: small writes left to wait for an acknowledgement cost each command 40 ms.
int acceptWithin(int listener, int waitMs) {
    if (listener < 0 || !loopback::Readable(listener, waitMs)) return -1;
    const int fd = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    const int yes = 1;
    if (fd >= 0) ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    return fd;
}

void reply(int fd, const std::string& line) { loopback::SendAll(fd, line + "\r\n"); }

int depthOf(const std::string& path) {
    int depth = 0;
    bool inName = false;
    for (const char ch : path) {
        if (ch == '/') inName = false;
        else if (!inName) {
            inName = true;
            ++depth;
        }
    }
    return depth;
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char ch) { return std::toupper(ch); });
    return text;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Commands whose answer never changes.
const std::map<std::string, std::string> kSimpleReplies = {
    {"USER", "331 password please"}, {"PASS", "230 logged in"}, {"PWD", "257 \"/\" is the current folder"},
    {"CWD", "250 done"}, {"RMD", "250 done"}, {"TYPE", "200 ok"}, {"NOOP", "200 ok"}, {"OPTS", "200 ok"},
    {"SYST", "215 UNIX Type: L8"}, {"REST", "350 restarting"}};

// The data connection of one transfer: a passive listener, then the connection the client makes to it.
class DataChannel {
public:
    ~DataChannel() { close(); }
    // The port to give in the EPSV reply; 0 when no listener could be made.
    int open() {
        close();
        int port = 0;
        m_listener = loopback::Listen(port);
        return m_listener < 0 ? 0 : port;
    }
    int connection() {
        if (m_connection < 0) m_connection = acceptWithin(m_listener, kWaitMs);
        return m_connection;
    }
    void close() {
        if (m_connection >= 0) ::close(m_connection);
        if (m_listener >= 0) ::close(m_listener);
        m_connection = m_listener = -1;
    }

private:
    int m_listener = -1;
    int m_connection = -1;
};

// Sends the bytes over the transfer's data connection between the two replies, then closes it.
void sendOverData(int control, DataChannel& data, std::string_view bytes, const char* start, const char* end) {
    if (const int connection = data.connection(); connection < 0) {
        reply(control, "425 no data connection");
    } else {
        reply(control, start);
        loopback::SendAll(connection, bytes);
        data.close();
        reply(control, end);
    }
    data.close();
}

} // namespace

FakeFtpSite::FakeFtpSite() {
    m_listener = loopback::Listen(m_port);
    if (m_listener >= 0) m_acceptor = std::thread([this] { acceptLoop(); });
}

FakeFtpSite::~FakeFtpSite() {
    m_stopping = true;
    if (m_acceptor.joinable()) m_acceptor.join();
    if (m_listener >= 0) ::close(m_listener);
    {
        const std::lock_guard lock(m_sessionsMutex);
        for (const int control : m_openControls) ::shutdown(control, SHUT_RDWR);
    }
    for (const std::unique_ptr<Session>& session : m_sessions) session->thread.join();
}

void FakeFtpSite::reapSessions() {
    auto finished = std::stable_partition(m_sessions.begin(), m_sessions.end(),
                                          [](const std::unique_ptr<Session>& session) { return !session->done; });
    for (auto it = finished; it != m_sessions.end(); ++it) (*it)->thread.join();
    m_sessions.erase(finished, m_sessions.end());
}

void FakeFtpSite::serve(FtpSiteContent content) {
    const std::lock_guard lock(m_filesMutex);
    m_content = std::move(content);
    m_uploaded.clear();
    m_removed.clear();
}

void FakeFtpSite::acceptLoop() {
    while (!m_stopping) {
        const int control = acceptWithin(m_listener, 100);
        reapSessions();
        if (control < 0) continue;
        const std::lock_guard lock(m_sessionsMutex);
        m_openControls.push_back(control);
        auto session = std::make_unique<Session>();
        Session* running = session.get();
        session->thread = std::thread([this, control, running] {
            converse(control);
            running->done = true;
        });
        m_sessions.push_back(std::move(session));
    }
}

bool FakeFtpSite::fileAt(const std::string& path, std::string& bytes) {
    const std::lock_guard lock(m_filesMutex);
    if (m_removed.count(path)) return false;
    if (const auto uploaded = m_uploaded.find(path); uploaded != m_uploaded.end()) {
        bytes = uploaded->second;
        return true;
    }
    const std::string name = path.substr(path.find_last_of('/') + 1);
    if (name == "Server.xml") {
        bytes = m_content.journal;
        return !bytes.empty();
    }
    if (endsWith(upper(name), ".BAK")) {
        bytes = m_content.lock;
        return !bytes.empty();
    }
    bytes = "site file";
    return true;
}

std::string FakeFtpSite::listingOf(const std::string& path, bool mlsd, bool& refused) {
    const std::lock_guard lock(m_filesMutex);
    refused = mlsd && !m_content.mlsd;
    return depthOf(path) <= kListedDepth ? m_content.listing : std::string();
}

void FakeFtpSite::converse(int control) {
    reply(control, "220 fuzz site");
    DataChannel data;
    std::string pending;
    std::string renameFrom;
    char buffer[1024];
    while (!m_stopping) {
        size_t lineEnd = pending.find("\r\n");
        if (lineEnd == std::string::npos) {
            if (!loopback::Readable(control, kWaitMs)) break;
            const ssize_t got = ::recv(control, buffer, sizeof buffer, 0);
            if (got <= 0) break;
            pending.append(buffer, static_cast<size_t>(got));
            continue;
        }
        const std::string line = pending.substr(0, lineEnd);
        pending.erase(0, lineEnd + 2);
        const size_t blank = line.find(' ');
        const std::string command = upper(line.substr(0, blank));
        const std::string argument = blank == std::string::npos ? std::string() : line.substr(blank + 1);

        if (const auto simple = kSimpleReplies.find(command); simple != kSimpleReplies.end()) {
            reply(control, simple->second);
        } else if (command == "DELE") {
            const std::lock_guard lock(m_filesMutex);
            m_uploaded.erase(argument);
            m_removed.insert(argument);
            reply(control, "250 done");
        } else if (command == "RNTO") {
            {
                const std::lock_guard lock(m_filesMutex);
                if (const auto moved = m_uploaded.find(renameFrom); moved != m_uploaded.end()) {
                    m_uploaded[argument] = moved->second;
                    m_uploaded.erase(moved);
                }
                m_removed.erase(argument);
            }
            reply(control, "250 done");
        } else if (command == "RNFR") {
            renameFrom = argument;
            reply(control, "350 go on");
        } else if (command == "MKD") reply(control, "257 \"" + argument + "\" made");
        else if (command == "EPSV") {
            const int port = data.open();
            reply(control, port ? "229 Entering Extended Passive Mode (|||" + std::to_string(port) + "|)" : "425 no port");
        } else if (command == "SIZE") {
            std::string bytes;
            reply(control, fileAt(argument, bytes) ? "213 " + std::to_string(bytes.size()) : "550 no such file");
        } else if (command == "RETR") {
            std::string bytes;
            if (fileAt(argument, bytes)) sendOverData(control, data, bytes, "150 sending", "226 sent");
            else reply(control, "550 no such file");
        } else if (command == "MLSD" || command == "LIST" || command == "NLST") {
            bool refused = false;
            const std::string listing = listingOf(argument, command == "MLSD", refused);
            if (refused) reply(control, "500 unknown command");
            else sendOverData(control, data, listing, "150 listing", "226 listed");
        } else if (command == "STOR" || command == "APPE") {
            if (const int connection = data.connection(); connection < 0) {
                reply(control, "425 no data connection");
            } else {
                reply(control, "150 receiving");
                const std::string bytes = loopback::ReceiveAll(connection, kWaitMs);
                data.close();
                {
                    const std::lock_guard lock(m_filesMutex);
                    std::string& file = m_uploaded[argument];
                    file = command == "APPE" ? file + bytes : bytes;
                    m_removed.erase(argument);
                }
                reply(control, "226 received");
            }
            data.close();
        } else if (command == "QUIT") {
            reply(control, "221 bye");
            break;
        } else {
            reply(control, "502 not here");
        }
    }
    {
        const std::lock_guard lock(m_sessionsMutex);
        m_openControls.erase(std::remove(m_openControls.begin(), m_openControls.end(), control), m_openControls.end());
    }
    ::close(control);
}

} // namespace fuzz
