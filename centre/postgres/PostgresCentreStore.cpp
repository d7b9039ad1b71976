// The BOM centre's store in PostgreSQL.
#include "centre/postgres/PostgresCentreStore.h"

#include "centre/operations/CentreError.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "centre/postgres/PostgresCentreSchema.h"
#include "support/Format.h"

#include <pqxx/pqxx>

namespace {

// Every writer of the centre's tables holds this transaction-scoped advisory lock (an arbitrary key of the
// centre's own), which is what makes revision numbers gapless under concurrent submits.
constexpr long long kWriterLock = 0x48584d4f4f52;  // "HXMOOR"

CString text(const pqxx::field& field) { return field.is_null() ? CString() : CString::FromUtf8(field.c_str()); }
std::string utf8(const CString& value) { return value.ToUtf8(); }

CentreProject projectFrom(const pqxx::row& row) {
    return {row[0].as<long long>(), text(row[1]), text(row[2]), text(row[3]), row[4].as<long long>()};
}

CentreNode nodeFrom(const pqxx::row& row) {
    return {row[0].as<long long>(), row[1].as<long long>(), row[2].as<long long>(), row[3].as<int>(), text(row[4]),
            text(row[5]), text(row[6]), text(row[7]), text(row[8]), text(row[9])};
}

CentreRevision revisionFrom(const pqxx::row& row) {
    return {row[0].as<long long>(), row[1].as<long long>(), row[2].as<int>(), text(row[3]), text(row[4]), text(row[5]),
            text(row[6])};
}

const std::string kProjectColumns =
    "SELECT p.id, p.enterprise, p.name, p.created, "
    "COALESCE((SELECT MAX(r.id) FROM revisions r JOIN nodes n ON n.id = r.node_id WHERE n.project_id = p.id), 0) "
    "FROM projects p ";
const std::string kNodeColumns =
    "SELECT id, project_id, COALESCE(parent_id, 0), position, name, type, cir_no, cir_name, cir_type, cir_size FROM nodes ";
const std::string kRevisionColumns = "SELECT id, node_id, number, kind, enterprise, \"user\", submitted FROM revisions ";

[[noreturn]] void rethrowAsStoreError(const std::exception& error) {
    // A lost connection or a refused statement: the transaction is gone either way.
    throw CCentreStoreError(QxFormat(u"The BOM centre database failed: %s", CString::FromUtf8(error.what())),
                            dynamic_cast<const pqxx::broken_connection*>(&error) != nullptr);
}

} // namespace

struct CPostgresCentreStore::Session {
    explicit Session(const std::string& connectionString) : connection(connectionString) {}
    pqxx::connection connection;
    std::unique_ptr<pqxx::dbtransaction> transaction;
};

// Runs one statement in the open transaction, or alone when none is open; errors become CCentreStoreError.
class CPostgresCentreStore::Query {
public:
    explicit Query(CPostgresCentreStore& store) : m_store(store) {}

    template <typename... Args>
    pqxx::result operator()(const std::string& sql, Args&&... args) {
        try {
            if (m_store.m_session->transaction) return m_store.m_session->transaction->exec_params(sql, std::forward<Args>(args)...);
            pqxx::work alone(m_store.m_session->connection);
            pqxx::result result = alone.exec_params(sql, std::forward<Args>(args)...);
            alone.commit();
            return result;
        } catch (const pqxx::failure& error) {
            rethrowAsStoreError(error);
        } catch (const pqxx::usage_error& error) {
            rethrowAsStoreError(error);
        } catch (const pqxx::conversion_error& error) {
            rethrowAsStoreError(error);
        }
    }

private:
    CPostgresCentreStore& m_store;
};

CPostgresCentreStore::CPostgresCentreStore(const std::string& connectionString) {
    try {
        m_session = std::make_unique<Session>(connectionString);
    } catch (const pqxx::failure& error) {
        rethrowAsStoreError(error);
    }
    migrate();
}

CPostgresCentreStore::~CPostgresCentreStore() {
    if (m_session) rollback();
}

int CPostgresCentreStore::schemaVersion() {
    Query query(*this);
    const pqxx::result found = query("SELECT to_regclass('schema_version') IS NOT NULL");
    if (!found[0][0].as<bool>()) return 0;
    const pqxx::result version = query("SELECT COALESCE(MAX(version), 0) FROM schema_version");
    return version[0][0].as<int>();
}

void CPostgresCentreStore::migrate() {
    const int latest = kCentreSchemaVersion;
    CentreTransaction transaction(*this, CentreTransaction::Mode::Write);
    // Under the writers' lock, so that two servers starting together migrate once.
    const int version = schemaVersion();
    if (version > latest)
        throw CCentreStoreError(QxFormat(u"The BOM centre database has schema version %d, newer than this build knows (%d); "
                                         u"use the newer release that wrote it.",
                                         version, latest));
    if (version == latest) return;
    Query query(*this);
    query("CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)");
    // A migration is several statements, which only the simple protocol takes.
    for (const PostgresCentreMigration& migration : PostgresCentreMigrations()) {
        if (migration.version <= version) continue;
        try {
            m_session->transaction->exec(migration.sql);
        } catch (const pqxx::failure& error) {
            rethrowAsStoreError(error);
        }
    }
    query("DELETE FROM schema_version");
    query("INSERT INTO schema_version (version) VALUES ($1)", latest);
    transaction.commit();
}

void CPostgresCentreStore::beginWrite() {
    try {
        m_session->transaction = std::make_unique<pqxx::work>(m_session->connection);
        m_session->transaction->exec_params("SELECT pg_advisory_xact_lock($1)", kWriterLock);
    } catch (const pqxx::failure& error) {
        m_session->transaction.reset();
        rethrowAsStoreError(error);
    }
}

void CPostgresCentreStore::beginRead() {
    try {
        m_session->transaction = std::make_unique<pqxx::transaction<pqxx::repeatable_read, pqxx::read_only>>(m_session->connection);
    } catch (const pqxx::failure& error) {
        rethrowAsStoreError(error);
    }
}

void CPostgresCentreStore::commit() {
    if (!m_session->transaction) return;
    try {
        m_session->transaction->commit();
        m_session->transaction.reset();
    } catch (const pqxx::failure& error) {
        m_session->transaction.reset();
        rethrowAsStoreError(error);
    }
}

void CPostgresCentreStore::rollback() noexcept {
    if (!m_session->transaction) return;
    try {
        m_session->transaction->abort();
    } catch (const std::exception&) {
        // A connection that is gone has rolled back on the server already.
    }
    m_session->transaction.reset();
}

std::optional<CString> CPostgresCentreStore::credentialHash(const CString& enterprise, const CString& user) {
    const pqxx::result found = Query(*this)(
        "SELECT credential_hash FROM accounts WHERE enterprise = $1 AND \"user\" = $2", utf8(enterprise), utf8(user));
    if (found.empty()) return std::nullopt;
    return text(found[0][0]);
}

void CPostgresCentreStore::addAccount(const CentreAccount& account) {
    Query(*this)("INSERT INTO accounts (enterprise, \"user\", credential_hash, created) VALUES ($1, $2, $3, $4)",
                 utf8(account.enterprise), utf8(account.user), utf8(account.credentialHash), utf8(account.created));
}

void CPostgresCentreStore::addUsageFile(const CentreUsageFile& file) {
    Query(*this)("INSERT INTO usage_files (enterprise, \"user\", item, key, text, received) VALUES ($1, $2, $3, $4, $5, $6)",
                 utf8(file.enterprise), utf8(file.user), utf8(file.item), utf8(file.key), utf8(file.text), utf8(file.received));
}

std::vector<CentreUsageFile> CPostgresCentreStore::usageFiles() {
    std::vector<CentreUsageFile> files;
    for (const pqxx::row& row :
         Query(*this)("SELECT id, enterprise, \"user\", item, key, text, received FROM usage_files ORDER BY id"))
        files.push_back({row[0].as<long long>(), text(row[1]), text(row[2]), text(row[3]), text(row[4]), text(row[5]), text(row[6])});
    return files;
}

long long CPostgresCentreStore::addProject(const CentreProject& project) {
    const pqxx::result id = Query(*this)("INSERT INTO projects (enterprise, name, created) VALUES ($1, $2, $3) RETURNING id",
                                         utf8(project.enterprise), utf8(project.name), utf8(project.created));
    return id[0][0].as<long long>();
}

std::optional<CentreProject> CPostgresCentreStore::project(long long id) {
    const pqxx::result found = Query(*this)(kProjectColumns + "WHERE p.id = $1", id);
    if (found.empty()) return std::nullopt;
    return projectFrom(found[0]);
}

std::vector<CentreProject> CPostgresCentreStore::projects(const CString& enterprise) {
    std::vector<CentreProject> found;
    for (const pqxx::row& row : Query(*this)(kProjectColumns + "WHERE $1 = '' OR p.enterprise = $1 ORDER BY p.id", utf8(enterprise)))
        found.push_back(projectFrom(row));
    return found;
}

long long CPostgresCentreStore::addNode(const CentreNode& node) {
    // A parent of 0 is the project's root, kept as NULL so that the reference holds.
    const pqxx::result id = Query(*this)(
        "INSERT INTO nodes (project_id, parent_id, position, name, type, cir_no, cir_name, cir_type, cir_size) "
        "VALUES ($1, NULLIF($2, 0), $3, $4, $5, $6, $7, $8, $9) RETURNING id",
        node.projectId, node.parentId, node.position, utf8(node.name), utf8(node.type), utf8(node.cirNo),
        utf8(node.cirName), utf8(node.cirType), utf8(node.cirSize));
    return id[0][0].as<long long>();
}

std::optional<CentreNode> CPostgresCentreStore::node(long long id) {
    const pqxx::result found = Query(*this)(kNodeColumns + "WHERE id = $1", id);
    if (found.empty()) return std::nullopt;
    return nodeFrom(found[0]);
}

std::vector<CentreNode> CPostgresCentreStore::nodes(long long projectId) {
    std::vector<CentreNode> found;
    for (const pqxx::row& row :
         Query(*this)(kNodeColumns + "WHERE project_id = $1 ORDER BY COALESCE(parent_id, 0), position, id", projectId))
        found.push_back(nodeFrom(row));
    return found;
}

long long CPostgresCentreStore::addRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows) {
    Query query(*this);
    const pqxx::result inserted = query(
        "INSERT INTO revisions (node_id, number, kind, enterprise, \"user\", submitted) VALUES ($1, $2, $3, $4, $5, $6) "
        "RETURNING id",
        revision.nodeId, revision.number, utf8(revision.kind), utf8(revision.enterprise), utf8(revision.user),
        utf8(revision.submitted));
    const long long id = inserted[0][0].as<long long>();
    int position = 0;
    for (const CentreRow& row : rows)
        query("INSERT INTO bom_rows (revision_id, position, label, name, model, count, remark, code, secondary) "
              "VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)",
              id, position++, utf8(row.label), utf8(row.name), utf8(row.model), utf8(row.count), utf8(row.remark),
              utf8(row.code), row.secondary);
    return id;
}

std::optional<CentreRevision> CPostgresCentreStore::currentRevision(long long nodeId) {
    const pqxx::result found = Query(*this)(kRevisionColumns + "WHERE node_id = $1 ORDER BY number DESC LIMIT 1", nodeId);
    if (found.empty()) return std::nullopt;
    return revisionFrom(found[0]);
}

std::vector<CentreRevision> CPostgresCentreStore::revisions(long long nodeId) {
    std::vector<CentreRevision> found;
    for (const pqxx::row& row : Query(*this)(kRevisionColumns + "WHERE node_id = $1 ORDER BY number", nodeId))
        found.push_back(revisionFrom(row));
    return found;
}

std::vector<CentreRow> CPostgresCentreStore::rows(long long revisionId) {
    std::vector<CentreRow> found;
    for (const pqxx::row& row : Query(*this)(
             "SELECT label, name, model, count, remark, code, secondary FROM bom_rows WHERE revision_id = $1 ORDER BY position",
             revisionId))
        found.push_back({text(row[0]), text(row[1]), text(row[2]), text(row[3]), text(row[4]), text(row[5]), row[6].as<bool>()});
    return found;
}
