// The BOM centre's store in one SQLite file.
#include "centre/sqlite/SqliteCentreStore.h"

#include "centre/sqlite/SqliteCentreSchema.h"
#include "centre/sqlite/SqliteStore.h"
#include "support/Format.h"

#include <set>
#include <string>

namespace {

CentreProject projectFrom(const SqliteStatement& row) {
    return {row.integer(0), row.text(1), row.text(2), row.text(3), row.integer(4)};
}

CentreNode nodeFrom(const SqliteStatement& row) {
    return {row.integer(0), row.integer(1), row.integer(2), static_cast<int>(row.integer(3)), row.text(4), row.text(5),
            row.text(6), row.text(7), row.text(8), row.text(9)};
}

CentreRevision revisionFrom(const SqliteStatement& row) {
    return {row.integer(0), row.integer(1), static_cast<int>(row.integer(2)), row.text(3), row.text(4), row.text(5), row.text(6)};
}

const char* const kProjectColumns =
    "SELECT p.id, p.enterprise, p.name, p.created, "
    "COALESCE((SELECT MAX(r.id) FROM revisions r JOIN nodes n ON n.id = r.node_id WHERE n.project_id = p.id), 0) "
    "FROM projects p ";
const char* const kNodeColumns =
    "SELECT id, project_id, COALESCE(parent_id, 0), position, name, type, cir_no, cir_name, cir_type, cir_size FROM nodes ";
const char* const kAccountColumns = "SELECT enterprise, user, credential_hash, created, disabled FROM accounts ";

CentreAccount accountFrom(const SqliteStatement& row) {
    return {row.text(0), row.text(1), row.text(2), row.text(3), row.integer(4) != 0};
}

const char* const kRevisionColumns = "SELECT id, node_id, number, kind, enterprise, user, submitted FROM revisions ";

std::string sql(const char* columns, const char* rest) { return std::string(columns) + rest; }

} // namespace

CSqliteCentreStore::CSqliteCentreStore(const std::string& nativePath, int busyTimeoutMs)
    : m_db(std::make_unique<SqliteStore>(nativePath, busyTimeoutMs, SqliteStore::Access::ReadWrite)) {
    m_db->execute("PRAGMA foreign_keys = ON");
    migrate();
}

CSqliteCentreStore::CSqliteCentreStore(std::unique_ptr<SqliteStore> db) : m_db(std::move(db)) {}

std::unique_ptr<CSqliteCentreStore> CSqliteCentreStore::OpenForReading(const std::string& nativePath) {
    std::unique_ptr<CSqliteCentreStore> store(
        new CSqliteCentreStore(std::make_unique<SqliteStore>(nativePath, kCentreBusyTimeoutMs, SqliteStore::Access::ReadOnly)));
    const int version = store->schemaVersion();
    if (version != 0 && version != kCentreSchemaVersion)
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s has schema version %d; this build reads version %d "
                                         u"(an older store is brought up to date by the next login).",
                                         CString(nativePath), version, kCentreSchemaVersion));
    return store;
}

CSqliteCentreStore::~CSqliteCentreStore() = default;

int CSqliteCentreStore::schemaVersion() {
    std::set<std::string> tables;
    auto list = m_db->prepare("SELECT name FROM sqlite_master WHERE type = 'table'");
    while (list.step()) tables.insert(list.text(0).ToUtf8());
    if (tables.contains("schema_version")) {
        auto version = m_db->prepare("SELECT MAX(version) FROM schema_version");
        return version.step() ? static_cast<int>(version.integer(0)) : 0;
    }
    if (tables.contains("accounts")) return 1;
    if (tables.empty()) return 0;
    throw CCentreStoreError(QxFormat(u"The file %s is some other database, not a BOM centre store.", CString(m_db->path())));
}

void CSqliteCentreStore::migrate() {
    const int latest = kCentreSchemaVersion;
    const auto refuseNewer = [&](int version) {
        if (version > latest)
            throw CCentreStoreError(QxFormat(u"The BOM centre store %s has schema version %d, newer than this build knows (%d); "
                                             u"use the newer release that wrote it.",
                                             CString(m_db->path()), version, latest));
    };
    int version = schemaVersion();
    refuseNewer(version);
    if (version == latest) return;

    CentreTransaction transaction(*this, CentreTransaction::Mode::Write);
    // Another process may have migrated the store while this one waited for the lock.
    version = schemaVersion();
    refuseNewer(version);
    if (version == latest) return;
    for (const CentreMigration& migration : CentreMigrations())
        if (migration.version > version) m_db->execute(migration.sql);
    m_db->prepare("DELETE FROM schema_version").run();
    m_db->prepare("INSERT INTO schema_version (version) VALUES (?1)").bind(1, static_cast<long long>(latest)).run();
    transaction.commit();
}

void CSqliteCentreStore::beginWrite() { m_db->execute("BEGIN IMMEDIATE"); }
void CSqliteCentreStore::beginRead() { m_db->execute("BEGIN"); }
void CSqliteCentreStore::commit() { m_db->execute("COMMIT"); }

void CSqliteCentreStore::rollback() noexcept {
    try {
        m_db->execute("ROLLBACK");
    } catch (const CCentreError&) {
        // SQLite has already rolled back a transaction that failed on its own.
    }
}

std::optional<CentreAccount> CSqliteCentreStore::account(const CString& enterprise, const CString& user) {
    const std::string text = sql(kAccountColumns, "WHERE enterprise = ?1 AND user = ?2");
    auto lookup = m_db->prepare(text.c_str());
    lookup.bind(1, enterprise).bind(2, user);
    if (!lookup.step()) return std::nullopt;
    return accountFrom(lookup);
}

void CSqliteCentreStore::updateAccount(const CentreAccount& account) {
    m_db->prepare("UPDATE accounts SET credential_hash = ?3, disabled = ?4 WHERE enterprise = ?1 AND user = ?2")
        .bind(1, account.enterprise)
        .bind(2, account.user)
        .bind(3, account.credentialHash)
        .bind(4, static_cast<long long>(account.disabled))
        .run();
}

std::vector<CentreAccount> CSqliteCentreStore::accounts() {
    const std::string text = sql(kAccountColumns, "ORDER BY enterprise, user");
    auto list = m_db->prepare(text.c_str());
    std::vector<CentreAccount> found;
    while (list.step()) found.push_back(accountFrom(list));
    return found;
}

void CSqliteCentreStore::addSession(const CentreSession& session) {
    m_db->prepare("INSERT INTO sessions (token_hash, enterprise, user, last_used) VALUES (?1, ?2, ?3, ?4)")
        .bind(1, session.tokenHash)
        .bind(2, session.enterprise)
        .bind(3, session.user)
        .bind(4, session.lastUsed)
        .run();
}

std::optional<CentreSession> CSqliteCentreStore::session(const CString& tokenHash) {
    auto lookup = m_db->prepare("SELECT token_hash, enterprise, user, last_used FROM sessions WHERE token_hash = ?1");
    lookup.bind(1, tokenHash);
    if (!lookup.step()) return std::nullopt;
    return CentreSession{lookup.text(0), lookup.text(1), lookup.text(2), lookup.integer(3)};
}

void CSqliteCentreStore::touchSession(const CString& tokenHash, long long lastUsed) {
    m_db->prepare("UPDATE sessions SET last_used = ?2 WHERE token_hash = ?1").bind(1, tokenHash).bind(2, lastUsed).run();
}

void CSqliteCentreStore::removeSession(const CString& tokenHash) {
    m_db->prepare("DELETE FROM sessions WHERE token_hash = ?1").bind(1, tokenHash).run();
}

void CSqliteCentreStore::removeSessionsUnusedSince(long long time) {
    m_db->prepare("DELETE FROM sessions WHERE last_used < ?1").bind(1, time).run();
}

void CSqliteCentreStore::removeSessionsOf(const CString& enterprise, const CString& user) {
    m_db->prepare("DELETE FROM sessions WHERE enterprise = ?1 AND user = ?2").bind(1, enterprise).bind(2, user).run();
}

void CSqliteCentreStore::addAccount(const CentreAccount& account) {
    m_db->prepare("INSERT INTO accounts (enterprise, user, credential_hash, created, disabled) VALUES (?1, ?2, ?3, ?4, ?5)")
        .bind(1, account.enterprise)
        .bind(2, account.user)
        .bind(3, account.credentialHash)
        .bind(4, account.created)
        .bind(5, static_cast<long long>(account.disabled))
        .run();
}

void CSqliteCentreStore::addUsageFile(const CentreUsageFile& file) {
    m_db->prepare("INSERT INTO usage_files (enterprise, user, item, key, text, received) VALUES (?1, ?2, ?3, ?4, ?5, ?6)")
        .bind(1, file.enterprise)
        .bind(2, file.user)
        .bind(3, file.item)
        .bind(4, file.key)
        .bind(5, file.text)
        .bind(6, file.received)
        .run();
}

std::vector<CentreUsageFile> CSqliteCentreStore::usageFiles() {
    std::vector<CentreUsageFile> files;
    auto list = m_db->prepare("SELECT id, enterprise, user, item, key, text, received FROM usage_files ORDER BY id");
    while (list.step())
        files.push_back({list.integer(0), list.text(1), list.text(2), list.text(3), list.text(4), list.text(5), list.text(6)});
    return files;
}

long long CSqliteCentreStore::addProject(const CentreProject& project) {
    m_db->prepare("INSERT INTO projects (enterprise, name, created) VALUES (?1, ?2, ?3)")
        .bind(1, project.enterprise)
        .bind(2, project.name)
        .bind(3, project.created)
        .run();
    return m_db->lastInsertId();
}

std::optional<CentreProject> CSqliteCentreStore::project(long long id) {
    const std::string text = sql(kProjectColumns, "WHERE p.id = ?1");
    auto lookup = m_db->prepare(text.c_str());
    lookup.bind(1, id);
    if (!lookup.step()) return std::nullopt;
    return projectFrom(lookup);
}

std::vector<CentreProject> CSqliteCentreStore::projects(const CString& enterprise) {
    const std::string text = sql(kProjectColumns, "WHERE p.enterprise = ?1 ORDER BY p.id");
    auto list = m_db->prepare(text.c_str());
    list.bind(1, enterprise);
    std::vector<CentreProject> found;
    while (list.step()) found.push_back(projectFrom(list));
    return found;
}

std::vector<CentreProject> CSqliteCentreStore::allProjects() {
    const std::string text = sql(kProjectColumns, "ORDER BY p.id");
    auto list = m_db->prepare(text.c_str());
    std::vector<CentreProject> found;
    while (list.step()) found.push_back(projectFrom(list));
    return found;
}

long long CSqliteCentreStore::addNode(const CentreNode& node) {
    auto insert = m_db->prepare(
        "INSERT INTO nodes (project_id, parent_id, position, name, type, cir_no, cir_name, cir_type, cir_size) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    insert.bind(1, node.projectId);
    if (node.parentId == 0) insert.bindNull(2);
    else insert.bind(2, node.parentId);
    insert.bind(3, static_cast<long long>(node.position))
        .bind(4, node.name)
        .bind(5, node.type)
        .bind(6, node.cirNo)
        .bind(7, node.cirName)
        .bind(8, node.cirType)
        .bind(9, node.cirSize)
        .run();
    return m_db->lastInsertId();
}

std::optional<CentreNode> CSqliteCentreStore::node(long long id) {
    const std::string text = sql(kNodeColumns, "WHERE id = ?1");
    auto lookup = m_db->prepare(text.c_str());
    lookup.bind(1, id);
    if (!lookup.step()) return std::nullopt;
    return nodeFrom(lookup);
}

std::vector<CentreNode> CSqliteCentreStore::nodes(long long projectId) {
    const std::string text = sql(kNodeColumns, "WHERE project_id = ?1 ORDER BY COALESCE(parent_id, 0), position, id");
    auto list = m_db->prepare(text.c_str());
    list.bind(1, projectId);
    std::vector<CentreNode> found;
    while (list.step()) found.push_back(nodeFrom(list));
    return found;
}

long long CSqliteCentreStore::addRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows) {
    return addSubmittedRevision(revision, rows, CString());
}

long long CSqliteCentreStore::addSubmittedRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows,
                                                   const CString& submitKey) {
    m_db->prepare("INSERT INTO revisions (node_id, number, kind, enterprise, user, submitted, submit_key) "
                  "VALUES (?1, ?2, ?3, ?4, ?5, ?6, NULLIF(?7, ''))")
        .bind(1, revision.nodeId)
        .bind(2, static_cast<long long>(revision.number))
        .bind(3, revision.kind)
        .bind(4, revision.enterprise)
        .bind(5, revision.user)
        .bind(6, revision.submitted)
        .bind(7, submitKey)
        .run();
    const long long id = m_db->lastInsertId();
    // One statement for every row, bound afresh for each.
    auto insert = m_db->prepare("INSERT INTO bom_rows (revision_id, position, label, name, model, count, remark, code, secondary) "
                                "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    long long position = 0;
    for (const CentreRow& row : rows) {
        insert.reset()
            .bind(1, id)
            .bind(2, position++)
            .bind(3, row.label)
            .bind(4, row.name)
            .bind(5, row.model)
            .bind(6, row.count)
            .bind(7, row.remark)
            .bind(8, row.code)
            .bind(9, static_cast<long long>(row.secondary))
            .run();
    }
    return id;
}

std::optional<CentreRevision> CSqliteCentreStore::currentRevision(long long nodeId) {
    const std::string text = sql(kRevisionColumns, "WHERE node_id = ?1 ORDER BY number DESC LIMIT 1");
    auto lookup = m_db->prepare(text.c_str());
    lookup.bind(1, nodeId);
    if (!lookup.step()) return std::nullopt;
    return revisionFrom(lookup);
}

std::optional<CentreRevision> CSqliteCentreStore::revisionOfSubmit(long long nodeId, const CString& submitKey) {
    if (submitKey.IsEmpty()) return std::nullopt;
    const std::string text = sql(kRevisionColumns, "WHERE node_id = ?1 AND submit_key = ?2");
    auto lookup = m_db->prepare(text.c_str());
    lookup.bind(1, nodeId).bind(2, submitKey);
    if (!lookup.step()) return std::nullopt;
    return revisionFrom(lookup);
}

std::vector<CentreRevision> CSqliteCentreStore::revisions(long long nodeId) {
    const std::string text = sql(kRevisionColumns, "WHERE node_id = ?1 ORDER BY number");
    auto list = m_db->prepare(text.c_str());
    list.bind(1, nodeId);
    std::vector<CentreRevision> found;
    while (list.step()) found.push_back(revisionFrom(list));
    return found;
}

std::vector<CentreRow> CSqliteCentreStore::rows(long long revisionId) {
    auto list = m_db->prepare(
        "SELECT label, name, model, count, remark, code, secondary FROM bom_rows WHERE revision_id = ?1 ORDER BY position");
    list.bind(1, revisionId);
    std::vector<CentreRow> found;
    while (list.step())
        found.push_back({list.text(0), list.text(1), list.text(2), list.text(3), list.text(4), list.text(5), list.integer(6) != 0});
    return found;
}
