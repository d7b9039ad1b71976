// The logged-in sessions of hexmoord: a random token (256 bits from libsodium, as hex) per login, which
// names the enterprise and user and lapses after a time unused. The store keeps only a hash of each token,
// so sessions survive a restart and every server on one database knows them, while what the store holds
// opens nothing.
#pragma once

#include "centre/operations/BomCentreOperations.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

class QX_API CSessionTable {
public:
    // Seconds since the epoch.
    using Clock = std::function<long long()>;
    static constexpr std::chrono::seconds kDefaultIdleLimit{8 * 60 * 60};
    // A session's last use is written at most this often, so that requests do not all write.
    static constexpr long long kTouchSeconds = 60;

    explicit CSessionTable(std::chrono::seconds idleLimit = kDefaultIdleLimit, Clock clock = {});

    // A fresh token for the user.
    std::string open(ICentreStore& store, const CentreUser& user);
    // The token's user, when it is known and was used within the idle limit; using it restarts the limit.
    std::optional<CentreUser> use(ICentreStore& store, const std::string& token);
    void close(ICentreStore& store, const std::string& token);

private:
    const long long m_idleSeconds;
    const Clock m_clock;
};

// The hash a store keeps of a token (SHA-256, as hex).
QX_API CString SessionTokenHash(const std::string& token);
