#include "centre/server/LoginThrottle.h"

#include <algorithm>

CLoginThrottle::CLoginThrottle(Limits limits, Clock clock) : m_limits(limits), m_clock(std::move(clock)) {}

std::chrono::seconds CLoginThrottle::waitOf(Table& table, const std::string& key, std::chrono::steady_clock::time_point now) {
    const auto found = table.find(key);
    if (found == table.end() || found->second.until <= now) return std::chrono::seconds(0);
    // Rounded up: a wait of a fraction of a second is still a wait.
    return std::chrono::ceil<std::chrono::seconds>(found->second.until - now);
}

std::chrono::seconds CLoginThrottle::wait(const std::string& account, const std::string& address) {
    const std::lock_guard lock(m_mutex);
    const auto now = m_clock();
    return std::max(waitOf(m_accounts, account, now), waitOf(m_addresses, address, now));
}

std::chrono::seconds CLoginThrottle::count(Table& table, const std::string& key, int free,
                                           std::chrono::steady_clock::time_point now) {
    Count& entry = table[key];
    if (entry.failures > 0 && now - entry.last > m_limits.forgetAfter) entry = {};
    ++entry.failures;
    entry.last = now;
    const int over = entry.failures - free;
    if (over <= 0) return std::chrono::seconds(0);
    // 1 s, 2 s, 4 s, ... up to the longest wait.
    const auto wait = over > 20 ? m_limits.longestWait
                                : std::min(m_limits.longestWait, std::chrono::seconds(1LL << (over - 1)));
    entry.until = now + wait;
    bound(table, now);
    return wait;
}

std::chrono::seconds CLoginThrottle::failed(const std::string& account, const std::string& address) {
    const std::lock_guard lock(m_mutex);
    const auto now = m_clock();
    return std::max(count(m_accounts, account, m_limits.freeForAccount, now),
                    count(m_addresses, address, m_limits.freeForAddress, now));
}

void CLoginThrottle::succeeded(const std::string& account, const std::string& address) {
    const std::lock_guard lock(m_mutex);
    m_accounts.erase(account);
    m_addresses.erase(address);
}

// Many addresses or accounts at once must not grow the table without end: forgotten keys go first, then
// those with the fewest wrong credentials, which wait least.
void CLoginThrottle::bound(Table& table, std::chrono::steady_clock::time_point now) {
    if (table.size() <= m_limits.keysKept) return;
    std::erase_if(table, [&](const auto& entry) { return now - entry.second.last > m_limits.forgetAfter; });
    while (table.size() > m_limits.keysKept) {
        const auto smallest = std::min_element(table.begin(), table.end(), [](const auto& a, const auto& b) {
            return a.second.failures < b.second.failures;
        });
        table.erase(smallest);
    }
}
