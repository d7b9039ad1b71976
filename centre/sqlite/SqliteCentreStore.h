// The BOM centre's store in one SQLite file: the storage seam over SQLite, with a versioned schema.
// Opening brings an older store up to date with the ordered migrations (in one transaction) and refuses a
// store of a newer schema, a damaged file and a file that is some other database.
#pragma once

#include "centre/operations/CentreStore.h"

#include <memory>
#include <string>

class SqliteStore;

// The schema version this build writes.
constexpr int kCentreSchemaVersion = 4;
// How long an operation waits for a store that another process holds.
constexpr int kCentreBusyTimeoutMs = 5000;

class QX_API CSqliteCentreStore final : public ICentreStore {
public:
    // Throws CCentreStoreError when the file cannot be used as a store.
    explicit CSqliteCentreStore(const std::string& nativePath, int busyTimeoutMs = kCentreBusyTimeoutMs);
    // Opens an existing store for reading only: nothing is created or migrated, and a store of another
    // version than this build's is refused (an empty file reads as an empty store).
    static std::unique_ptr<CSqliteCentreStore> OpenForReading(const std::string& nativePath);
    ~CSqliteCentreStore() override;

    // The schema version of a store file, read without changing it: 0 for an empty file.
    int schemaVersion();

    void beginWrite() override;
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
    CSqliteCentreStore(std::unique_ptr<SqliteStore> db);
    void migrate();
    std::unique_ptr<SqliteStore> m_db;
};
