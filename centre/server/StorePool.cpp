#include "centre/server/StorePool.h"

#include "centre/sqlite/SqliteCentreStore.h"

CStorePool::Lease::~Lease() {
    if (m_discard) return;
    const std::lock_guard lock(m_pool.m_mutex);
    m_pool.m_idle.push_back(std::move(m_store));
}

CStorePool::Lease CStorePool::borrow() {
    for (;;) {
        std::unique_ptr<ICentreStore> store;
        {
            const std::lock_guard lock(m_mutex);
            if (m_idle.empty()) break;
            store = std::move(m_idle.back());
            m_idle.pop_back();
        }
        // A connection the database dropped (a restart) is checked here, outside the lock, and replaced.
        if (store->usable()) return Lease(*this, std::move(store));
    }
    return Lease(*this, m_opener());
}

bool IsPostgresConnectionString(const std::string& database) {
    return database.starts_with("postgresql://") || database.starts_with("postgres://") ||
           database.find('=') != std::string::npos;
}

CStorePool::Opener CentreStoreOpener(const std::string& database, PostgresTimeouts timeouts) {
    if (IsPostgresConnectionString(database))
        return [database, timeouts]() -> std::unique_ptr<ICentreStore> {
            return std::make_unique<CPostgresCentreStore>(database, timeouts);
        };
    // SQLite's lock is not fair: under a server's many workers a writer may wait longer than one person's
    // client would, so a server waits longer before it gives up.
    return [database]() -> std::unique_ptr<ICentreStore> { return std::make_unique<CSqliteCentreStore>(database, 30000); };
}
