// The BOM centre's store in a PostgreSQL database: the storage seam over libpqxx, with the same versioned
// schema as the SQLite store. Several servers may share one database: writers lock the project (or the
// enterprise's project names) they change for the length of their transaction, so what a write transaction
// read stays true until it commits. Waits for locks, statements and idle transactions are bounded.
#pragma once

#include "centre/operations/CentreStore.h"

#include <memory>
#include <string>

// How long a connection waits for a lock, lets a statement run, or lets a transaction sit idle, in seconds.
// The idle bound cuts off a frozen server holding a project, so that the other servers go on.
struct PostgresTimeouts {
    int lock = 10;
    int statement = 60;
    int idleInTransaction = 20;
};

class QX_API CPostgresCentreStore final : public ICentreStore {
public:
    // Connects and brings the schema up to date. Throws CCentreStoreError when the database cannot be
    // reached, or holds a schema newer than this build's.
    explicit CPostgresCentreStore(const std::string& connectionString, PostgresTimeouts timeouts = {});
    ~CPostgresCentreStore() override;

    // The schema version of the database: 0 for one without the centre's tables.
    int schemaVersion();

    void beginWrite() override;
    void lockProject(long long projectId) override;
    void lockEnterprise(const CString& enterprise) override;
    bool usable() noexcept override;
    void beginRead() override;
    void commit() override;
    void rollback() noexcept override;

    std::optional<CentreAccount> account(const CString& enterprise, const CString& user) override;
    void addAccount(const CentreAccount& account) override;
    void updateAccount(const CentreAccount& account) override;
    std::vector<CentreAccount> accounts() override;
    void addSession(const CentreSession& session) override;
    std::optional<CentreSession> session(const CString& tokenHash) override;
    void touchSession(const CString& tokenHash, long long lastUsed) override;
    void removeSession(const CString& tokenHash) override;
    void removeSessionsUnusedSince(long long time) override;
    void removeSessionsOf(const CString& enterprise, const CString& user) override;
    void addUsageFile(const CentreUsageFile& file) override;
    std::vector<CentreUsageFile> usageFiles() override;
    long long addProject(const CentreProject& project) override;
    std::optional<CentreProject> project(long long id) override;
    std::vector<CentreProject> projects(const CString& enterprise) override;
    std::vector<CentreProject> allProjects() override;
    long long addNode(const CentreNode& node) override;
    std::optional<CentreNode> node(long long id) override;
    std::vector<CentreNode> nodes(long long projectId) override;
    long long addRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows) override;
    long long addSubmittedRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows,
                                   const CString& submitKey) override;
    std::optional<CentreRevision> currentRevision(long long nodeId) override;
    std::optional<CentreRevision> revisionOfSubmit(long long nodeId, const CString& submitKey) override;
    std::vector<CentreRevision> revisions(long long nodeId) override;
    std::vector<CentreRow> rows(long long revisionId) override;

private:
    class Query;
    struct Session;  // the connection and its open transaction, if any
    void migrate();

    std::unique_ptr<Session> m_session;
};
