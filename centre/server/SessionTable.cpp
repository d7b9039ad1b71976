#include "centre/server/SessionTable.h"

#include <sodium.h>

#include <stdexcept>

namespace {

std::string randomToken() {
    if (sodium_init() < 0) throw std::runtime_error("libsodium cannot be initialised");
    unsigned char bytes[32];
    randombytes_buf(bytes, sizeof bytes);
    char hex[sizeof bytes * 2 + 1];
    sodium_bin2hex(hex, sizeof hex, bytes, sizeof bytes);
    return hex;
}

} // namespace

CSessionTable::CSessionTable(std::chrono::seconds idleLimit, Clock clock) : m_idleLimit(idleLimit), m_clock(std::move(clock)) {}

std::string CSessionTable::open(const CentreUser& user) {
    std::string token = randomToken();
    const std::lock_guard lock(m_mutex);
    const auto now = m_clock();
    dropLapsed(now);
    m_sessions[token] = {user, now};
    return token;
}

std::optional<CentreUser> CSessionTable::use(const std::string& token) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_sessions.find(token);
    if (found == m_sessions.end()) return std::nullopt;
    const auto now = m_clock();
    if (now - found->second.lastUsed > m_idleLimit) {
        m_sessions.erase(found);
        return std::nullopt;
    }
    found->second.lastUsed = now;
    return found->second.user;
}

void CSessionTable::close(const std::string& token) {
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(token);
}

// Lapsed sessions go at each login, so the table never outgrows the sessions in use.
void CSessionTable::dropLapsed(std::chrono::steady_clock::time_point now) {
    std::erase_if(m_sessions, [&](const auto& entry) { return now - entry.second.lastUsed > m_idleLimit; });
}
