// The logged-in sessions of hexmoord: a random token (256 bits from libsodium, as hex) per login, which
// names the enterprise and user and lapses after a time unused. Tokens live only in the server's memory, so
// a restart asks everyone to log in again.
#pragma once

#include "centre/operations/BomCentreOperations.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

class QX_API CSessionTable {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    static constexpr std::chrono::seconds kDefaultIdleLimit{8 * 60 * 60};

    explicit CSessionTable(std::chrono::seconds idleLimit = kDefaultIdleLimit, Clock clock = std::chrono::steady_clock::now);

    // A fresh token for the user.
    std::string open(const CentreUser& user);
    // The token's user, when it is known and was used within the idle limit; using it restarts the limit.
    std::optional<CentreUser> use(const std::string& token);
    void close(const std::string& token);

private:
    struct Session {
        CentreUser user;
        std::chrono::steady_clock::time_point lastUsed;
    };
    void dropLapsed(std::chrono::steady_clock::time_point now);

    const std::chrono::seconds m_idleLimit;
    const Clock m_clock;
    std::mutex m_mutex;
    std::unordered_map<std::string, Session> m_sessions;
};
