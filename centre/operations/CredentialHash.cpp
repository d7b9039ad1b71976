// Credentials are kept only as salted hashes.
#include "centre/operations/CredentialHash.h"

#include <sodium.h>

namespace {

bool sodiumReady() {
    static const bool ready = sodium_init() >= 0;
    return ready;
}

} // namespace

CString HashCredential(const CString& credential) {
    if (!sodiumReady()) return CString();
    const std::string secret = credential.ToUtf8();
    char hash[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(hash, secret.data(), secret.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        return CString();
    return CString(hash);
}

bool VerifyCredential(const CString& hash, const CString& credential) {
    if (!sodiumReady()) return false;
    const std::string stored = hash.ToUtf8();
    const std::string secret = credential.ToUtf8();
    return crypto_pwhash_str_verify(stored.c_str(), secret.data(), secret.size()) == 0;
}
