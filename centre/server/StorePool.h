// The stores of a server: each request borrows one store (a connection of its own) and gives it back, so
// requests run side by side without sharing a connection. A store that failed is dropped, not given back,
// and an idle one is checked before it is lent (a database restart leaves dead connections behind).
#pragma once

#include "centre/operations/CentreStore.h"
#include "centre/postgres/PostgresCentreStore.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class QX_API CStorePool {
public:
    using Opener = std::function<std::unique_ptr<ICentreStore>()>;

    explicit CStorePool(Opener opener) : m_opener(std::move(opener)) {}

    // A store lent for one scope.
    class Lease {
    public:
        Lease(CStorePool& pool, std::unique_ptr<ICentreStore> store) : m_pool(pool), m_store(std::move(store)) {}
        ~Lease();
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        ICentreStore& store() { return *m_store; }
        // The store failed: it is closed instead of going back to the pool.
        void discard() { m_discard = true; }

    private:
        CStorePool& m_pool;
        std::unique_ptr<ICentreStore> m_store;
        bool m_discard = false;
    };

    // Throws CCentreStoreError when no new store can be opened.
    Lease borrow();

private:
    Opener m_opener;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<ICentreStore>> m_idle;
};

// The store a server's --db names: a PostgreSQL connection string ("postgresql://…", "postgres://…", or
// key=value words), else the path of a SQLite file. The time-outs bound a PostgreSQL connection's waits.
QX_API CStorePool::Opener CentreStoreOpener(const std::string& database, PostgresTimeouts timeouts = {});
QX_API bool IsPostgresConnectionString(const std::string& database);
