#include "centre/server/SessionTable.h"

#include <sodium.h>

#include <ctime>
#include <stdexcept>

namespace {

void requireSodium() {
    if (sodium_init() < 0) throw std::runtime_error("libsodium cannot be initialised");
}

std::string randomToken() {
    requireSodium();
    unsigned char bytes[32];
    randombytes_buf(bytes, sizeof bytes);
    char hex[sizeof bytes * 2 + 1];
    sodium_bin2hex(hex, sizeof hex, bytes, sizeof bytes);
    return hex;
}

long long systemNow() { return static_cast<long long>(std::time(nullptr)); }

} // namespace

CString SessionTokenHash(const std::string& token) {
    requireSodium();
    unsigned char digest[crypto_hash_sha256_BYTES];
    crypto_hash_sha256(digest, reinterpret_cast<const unsigned char*>(token.data()), token.size());
    char hex[sizeof digest * 2 + 1];
    sodium_bin2hex(hex, sizeof hex, digest, sizeof digest);
    return CString(hex);
}

CSessionTable::CSessionTable(std::chrono::seconds idleLimit, Clock clock)
    : m_idleSeconds(idleLimit.count()), m_clock(clock ? std::move(clock) : Clock(systemNow)) {}

std::string CSessionTable::open(ICentreStore& store, const CentreUser& user) {
    std::string token = randomToken();
    const long long now = m_clock();
    CentreTransaction transaction(store, CentreTransaction::Mode::Write);
    // Lapsed sessions go at each login, so the table never outgrows the sessions in use.
    store.removeSessionsUnusedSince(now - m_idleSeconds);
    store.addSession({SessionTokenHash(token), user.enterprise, user.user, now});
    transaction.commit();
    return token;
}

std::optional<CentreUser> CSessionTable::use(ICentreStore& store, const std::string& token) {
    // Only what a login hands out can name a session; anything else is not looked up.
    if (token.size() != 64 || token.find_first_not_of("0123456789abcdef") != std::string::npos) return std::nullopt;
    const CString hash = SessionTokenHash(token);
    const auto session = store.session(hash);
    if (!session) return std::nullopt;
    const long long now = m_clock();
    if (now - session->lastUsed > m_idleSeconds) {
        store.removeSession(hash);
        return std::nullopt;
    }
    if (now - session->lastUsed >= kTouchSeconds) store.touchSession(hash, now);
    return CentreUser{session->enterprise, session->user};
}

void CSessionTable::close(ICentreStore& store, const std::string& token) { store.removeSession(SessionTokenHash(token)); }
