#include "centre/server/StorePool.h"

#include "centre/sqlite/SqliteCentreStore.h"
#include "centre/postgres/PostgresCentreStore.h"

CStorePool::Lease::~Lease() {
    if (m_discard) return;
    const std::lock_guard lock(m_pool.m_mutex);
    m_pool.m_idle.push_back(std::move(m_store));
}

CStorePool::Lease CStorePool::borrow() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_idle.empty()) {
            std::unique_ptr<ICentreStore> store = std::move(m_idle.back());
            m_idle.pop_back();
            return Lease(*this, std::move(store));
        }
    }
    return Lease(*this, m_opener());
}

bool IsPostgresConnectionString(const std::string& database) {
    return database.starts_with("postgresql://") || database.starts_with("postgres://") ||
           database.find('=') != std::string::npos;
}

CStorePool::Opener CentreStoreOpener(const std::string& database) {
    if (IsPostgresConnectionString(database))
        return [database]() -> std::unique_ptr<ICentreStore> { return std::make_unique<CPostgresCentreStore>(database); };
    return [database]() -> std::unique_ptr<ICentreStore> { return std::make_unique<CSqliteCentreStore>(database); };
}
