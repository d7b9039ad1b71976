// A throwaway PostgreSQL cluster for tests: made with initdb in a folder under /tmp, served on 127.0.0.1
// at a free port with its own socket folder, stopped and removed when the test program ends. initdb
// refuses root, so under root every server program runs as the `postgres` user.
#pragma once

#include <memory>
#include <string>

class PostgresCluster {
public:
    // The folder of initdb, pg_ctl and psql; empty where no PostgreSQL server is installed.
    static std::string ServerBinDir();

    // Throws std::runtime_error when the cluster does not start.
    PostgresCluster();
    ~PostgresCluster();
    PostgresCluster(const PostgresCluster&) = delete;
    PostgresCluster& operator=(const PostgresCluster&) = delete;

    int port() const { return m_port; }
    // A new, empty database in the cluster; returns its libpq connection string.
    std::string freshDatabase();
    // Runs SQL in the given database through psql; true when it succeeded.
    bool runSql(const std::string& connectionString, const std::string& sql) const;
    // The first value of a query's answer, as text; empty when it failed.
    std::string queryValue(const std::string& connectionString, const std::string& sql) const;

private:
    std::string m_bin;
    std::string m_folder;
    int m_port = 0;
    int m_databases = 0;
};

// The one cluster of this test program, started on first use; null where PostgreSQL is not installed.
PostgresCluster* SharedPostgresCluster();

// A line for GTEST_SKIP when SharedPostgresCluster() is null.
inline const char* kNoPostgresServer =
    "no PostgreSQL server installed (no initdb under /usr/lib/postgresql/*/bin): the PostgreSQL store is not tested here";

// A free TCP port on 127.0.0.1 at the moment of asking.
int FreeLoopbackPort();
