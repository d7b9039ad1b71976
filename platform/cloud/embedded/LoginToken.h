// The token that lets a later silent login of the embedded centre skip the slow credential check: a random
// 256-bit token kept in the stored login after a verified login, of which the store keeps only a hash and
// the time it was issued. The hash covers the credential given and the account's credential hash too, so a
// token opens nothing once the stored credential or the account's credential changed.
#pragma once

#include "centre/operations/BomCentreOperations.h"

#include <string>

class QX_API CLoginTokens {
public:
    // A token lapses this long after the verified login that issued it.
    static constexpr long long kLifetimeSeconds = 7 * 24 * 60 * 60;

    explicit CLoginTokens(ICentreStore& store) : m_store(store) {}

    // A fresh token for an account whose credential was just verified; lapsed tokens go at the same time.
    std::string issue(const CentreUser& user, const CString& credential);
    // True when the token was issued to this enabled account for this credential and has not lapsed.
    bool verify(const CentreUser& user, const CString& credential, const CString& token);

private:
    ICentreStore& m_store;
};

// What the store keeps of a token (SHA-256 as hex); empty when the token is not one that issue gives.
QX_API CString LoginTokenHash(const CString& token, const CString& credential, const CString& accountHash);
