#include "common/PostgresCluster.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

bool runningAsRoot() { return geteuid() == 0; }

// Paths here are made by this file (mkdtemp under /tmp) and contain no quote.
std::string quoted(const std::string& text) { return "'" + text + "'"; }

// Runs a server program as the cluster's owner: `postgres` under root, else the caller.
int runAsOwner(const std::string& command) {
    const std::string line = runningAsRoot() ? "runuser -u postgres -- " + command : command;
    return std::system((line + " >/dev/null 2>&1").c_str());
}

} // namespace

int FreeLoopbackPort() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0) return 0;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = 0;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

std::string PostgresCluster::ServerBinDir() {
    const fs::path root = "/usr/lib/postgresql";
    std::error_code error;
    std::string best;
    for (const auto& version : fs::directory_iterator(root, error)) {
        const fs::path bin = version.path() / "bin";
        if (fs::exists(bin / "initdb") && fs::exists(bin / "pg_ctl") && bin.string() > best) best = bin.string();
    }
    return best;
}

PostgresCluster::PostgresCluster() : m_bin(ServerBinDir()) {
    if (m_bin.empty()) throw std::runtime_error(kNoPostgresServer);
    std::string pattern = "/tmp/qx-postgres-XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("cannot make the cluster's folder under /tmp");
    m_folder = pattern;
    if (runningAsRoot()) {
        const passwd* owner = ::getpwnam("postgres");
        if (!owner || ::chown(m_folder.c_str(), owner->pw_uid, owner->pw_gid) != 0)
            throw std::runtime_error("cannot give the cluster's folder to the postgres user");
    }
    const std::string data = m_folder + "/data";
    if (runAsOwner(m_bin + "/initdb -D " + quoted(data) + " -A trust -U postgres -E UTF8 --locale=C --no-sync") != 0)
        throw std::runtime_error("initdb failed in " + m_folder);
    // A port taken between asking and starting makes pg_ctl fail: try a few.
    for (int attempt = 0; attempt < 5 && m_port == 0; ++attempt) {
        const int port = FreeLoopbackPort();
        const std::string options = "-p " + std::to_string(port) + " -k " + m_folder +
                                    " -c listen_addresses=127.0.0.1 -c fsync=off -c max_connections=200";
        if (runAsOwner(m_bin + "/pg_ctl -D " + quoted(data) + " -l " + quoted(m_folder + "/server.log") + " -w -t 60 -o " +
                       quoted(options) + " start") == 0)
            m_port = port;
    }
    if (m_port == 0) throw std::runtime_error("the PostgreSQL server did not start; see " + m_folder + "/server.log");
}

PostgresCluster::~PostgresCluster() {
    if (m_port != 0) runAsOwner(m_bin + "/pg_ctl -D " + quoted(m_folder + "/data") + " -m immediate -w stop");
    std::error_code ignored;
    fs::remove_all(m_folder, ignored);
}

namespace {

std::string psqlCommand(const std::string& bin, const std::string& connectionString, const std::string& sql) {
    std::string escaped;
    for (const char c : sql) escaped += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return bin + "/psql -X -q -A -t -v ON_ERROR_STOP=1 " + quoted(connectionString) + " -c '" + escaped + "'";
}

} // namespace

bool PostgresCluster::runSql(const std::string& connectionString, const std::string& sql) const {
    return std::system((psqlCommand(m_bin, connectionString, sql) + " >/dev/null 2>&1").c_str()) == 0;
}

std::string PostgresCluster::queryValue(const std::string& connectionString, const std::string& sql) const {
    FILE* pipe = ::popen((psqlCommand(m_bin, connectionString, sql) + " 2>/dev/null").c_str(), "r");
    if (!pipe) return {};
    std::string text;
    char buffer[256];
    while (std::fgets(buffer, sizeof buffer, pipe)) text += buffer;
    ::pclose(pipe);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return text;
}

std::string PostgresCluster::freshDatabase() {
    const std::string base = "host=127.0.0.1 port=" + std::to_string(m_port) + " user=postgres dbname=";
    const std::string name = "centre_" + std::to_string(::getpid()) + "_" + std::to_string(++m_databases);
    if (!runSql(base + "postgres", "CREATE DATABASE " + name))
        throw std::runtime_error("cannot make the database " + name);
    return base + name;
}

PostgresCluster* SharedPostgresCluster() {
    static const std::unique_ptr<PostgresCluster> cluster = []() -> std::unique_ptr<PostgresCluster> {
        if (PostgresCluster::ServerBinDir().empty()) return nullptr;
        return std::make_unique<PostgresCluster>();
    }();
    return cluster.get();
}
