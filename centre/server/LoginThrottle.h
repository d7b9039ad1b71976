// Slows guessing of credentials: after a few wrong credentials for one account, or from one address, each
// further wrong one makes that account or address wait twice as long (up to a limit) before its next login
// is even checked. A wait ends by itself; a correct login clears its account's and address's count. The
// counts live in the server's memory and forget a key some time after its last wrong credential.
#pragma once

#include "support/Export.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

struct LoginThrottleLimits {
    int freeForAccount = 5;
    int freeForAddress = 10;  // offices share an address
    std::chrono::seconds longestWait{300};
    std::chrono::seconds forgetAfter{15 * 60};
    size_t keysKept = 10000;  // per kind; beyond it the smallest counts are dropped
};

class QX_API CLoginThrottle {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    using Limits = LoginThrottleLimits;

    explicit CLoginThrottle(Limits limits = {}, Clock clock = std::chrono::steady_clock::now);

    // Zero when the account and the address may try now; else how long the longer of them still waits.
    std::chrono::seconds wait(const std::string& account, const std::string& address);
    // Counts a wrong credential; returns the wait it brings (zero while tries are free).
    std::chrono::seconds failed(const std::string& account, const std::string& address);
    void succeeded(const std::string& account, const std::string& address);

private:
    struct Count {
        int failures = 0;
        std::chrono::steady_clock::time_point last;
        std::chrono::steady_clock::time_point until;
    };
    using Table = std::unordered_map<std::string, Count>;

    std::chrono::seconds waitOf(Table& table, const std::string& key, std::chrono::steady_clock::time_point now);
    std::chrono::seconds count(Table& table, const std::string& key, int free, std::chrono::steady_clock::time_point now);
    void bound(Table& table, std::chrono::steady_clock::time_point now);

    const Limits m_limits;
    const Clock m_clock;
    std::mutex m_mutex;
    Table m_accounts;
    Table m_addresses;
};
