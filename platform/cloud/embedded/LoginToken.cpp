#include "platform/cloud/embedded/LoginToken.h"

#include "centre/operations/CentreError.h"
#include "centre/server/SessionTable.h"

#include <sodium.h>

#include <ctime>

namespace {

long long now() { return static_cast<long long>(std::time(nullptr)); }

bool isTokenText(const std::string& text) {
    return text.size() == 64 && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

} // namespace

CString LoginTokenHash(const CString& token, const CString& credential, const CString& accountHash) {
    const std::string text = token.ToUtf8();
    if (!isTokenText(text)) return {};
    // The NUL bytes keep the parts apart: neither a credential nor a crypt string holds one.
    return SessionTokenHash(text + '\0' + credential.ToUtf8() + '\0' + accountHash.ToUtf8());
}

std::string CLoginTokens::issue(const CentreUser& user, const CString& credential) {
    if (sodium_init() < 0) throw CCentreError(u"The login token cannot be made: libsodium cannot be initialised.");
    unsigned char bytes[32];
    randombytes_buf(bytes, sizeof bytes);
    char hex[sizeof bytes * 2 + 1];
    sodium_bin2hex(hex, sizeof hex, bytes, sizeof bytes);
    const long long issued = now();
    CentreTransaction transaction(m_store, CentreTransaction::Mode::Write);
    const auto account = m_store.account(user.enterprise, user.user);
    if (!account) return {};
    m_store.removeSessionsUnusedSince(issued - kLifetimeSeconds);
    m_store.addSession({LoginTokenHash(CString(hex), credential, account->credentialHash), user.enterprise, user.user, issued});
    transaction.commit();
    return hex;
}

bool CLoginTokens::verify(const CentreUser& user, const CString& credential, const CString& token) {
    const auto account = m_store.account(user.enterprise, user.user);
    if (!account || account->disabled) return false;
    const CString hash = LoginTokenHash(token, credential, account->credentialHash);
    if (hash.IsEmpty()) return false;
    const auto session = m_store.session(hash);
    if (!session || session->enterprise != user.enterprise || session->user != user.user) return false;
    const std::string kept = session->tokenHash.ToUtf8();
    const std::string given = hash.ToUtf8();
    if (kept.size() != given.size() || sodium_memcmp(kept.data(), given.data(), given.size()) != 0) return false;
    const long long age = now() - session->lastUsed;
    if (age < 0 || age > kLifetimeSeconds) {
        m_store.removeSession(hash);
        return false;
    }
    return true;
}
