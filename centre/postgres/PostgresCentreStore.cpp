// The BOM centre's store in PostgreSQL.
#include "centre/postgres/PostgresCentreStore.h"

#include "centre/operations/CentreError.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "centre/postgres/PostgresCentreSchema.h"
#include "support/Format.h"

#include <pqxx/pqxx>

namespace {

// Transaction-scoped advisory locks under keys of the centre's own: one for migrations, and per project (its
// revisions are numbered without gaps under concurrent submits) and per enterprise (its project names stay
// unique). Writers of different projects never wait for each other.
constexpr long long kMigrationLock = 0x48584d4f4f52;  // "HXMOOR"
constexpr int kProjectLockSpace = 0x484d0001;
constexpr int kEnterpriseLockSpace = 0x484d0002;

std::string timeoutSettings(const PostgresTimeouts& timeouts) {
    const auto seconds = [](int value) { return "'" + std::to_string(value) + "s'"; };
    return "SET lock_timeout = " + seconds(timeouts.lock) + "; SET statement_timeout = " + seconds(timeouts.statement) +
           "; SET idle_in_transaction_session_timeout = " + seconds(timeouts.idleInTransaction);
}

// The code PostgreSQL gives a statement that waited for a lock longer than lock_timeout.
const char* const kLockNotAvailable = "55P03";

CString text(const pqxx::field& field) { return field.is_null() ? CString() : CString::FromUtf8(field.c_str()); }
std::string utf8(const CString& value) { return StoreText(value); }

// An array literal of texts for one parameter ({"a","b\"c"}), so that a revision's rows go in one statement.
std::string textArray(const std::vector<CentreRow>& rows, CString CentreRow::*field) {
    std::string out = "{";
    for (const CentreRow& row : rows) {
        if (out.size() > 1) out += ',';
        out += '"';
        for (const char c : utf8(row.*field)) {
            if (c == '"' || c == '\\') out += '\\';
            out += c;
        }
        out += '"';
    }
    return out + "}";
}

std::string secondaryArray(const std::vector<CentreRow>& rows) {
    std::string out = "{";
    for (const CentreRow& row : rows) out += std::string(out.size() > 1 ? "," : "") + (row.secondary ? "t" : "f");
    return out + "}";
}

CentreAccount accountFrom(const pqxx::row& row) {
    return {text(row[0]), text(row[1]), text(row[2]), text(row[3]), row[4].as<bool>()};
}
const std::string kAccountColumns = "SELECT enterprise, \"user\", credential_hash, created, disabled FROM accounts ";

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
    // Another writer (a frozen server, say) holds what this one needs: said in words for anyone, and the
    // connection stays good.
    if (const auto* refused = dynamic_cast<const pqxx::sql_error*>(&error); refused && refused->sqlstate() == kLockNotAvailable)
        throw CCentreBusyError(u"Another submit holds this project and has not finished; nothing was changed. Try again later.");
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

CPostgresCentreStore::CPostgresCentreStore(const std::string& connectionString, PostgresTimeouts timeouts) {
    try {
        m_session = std::make_unique<Session>(connectionString);
        pqxx::nontransaction setup(m_session->connection);
        setup.exec(timeoutSettings(timeouts));
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
    // Under the migration lock, so that two servers starting together migrate once.
    Query(*this)("SELECT pg_advisory_xact_lock($1)", kMigrationLock);
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
    } catch (const pqxx::failure& error) {
        m_session->transaction.reset();
        rethrowAsStoreError(error);
    }
}

void CPostgresCentreStore::lockProject(long long projectId) {
    // Projects whose IDs differ by a multiple of 2^32 share a lock, which only makes them wait.
    Query(*this)("SELECT pg_advisory_xact_lock($1, $2)", kProjectLockSpace, static_cast<int>(static_cast<unsigned>(projectId)));
}

void CPostgresCentreStore::lockEnterprise(const CString& enterprise) {
    Query(*this)("SELECT pg_advisory_xact_lock($1, hashtext($2))", kEnterpriseLockSpace, utf8(enterprise));
}

bool CPostgresCentreStore::usable() noexcept {
    if (m_session->transaction) return false;
    try {
        pqxx::nontransaction check(m_session->connection);
        check.exec("SELECT 1");
        return true;
    } catch (const std::exception&) {
        return false;
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

std::optional<CentreAccount> CPostgresCentreStore::account(const CString& enterprise, const CString& user) {
    const pqxx::result found =
        Query(*this)(kAccountColumns + "WHERE enterprise = $1 AND \"user\" = $2", utf8(enterprise), utf8(user));
    if (found.empty()) return std::nullopt;
    return accountFrom(found[0]);
}

void CPostgresCentreStore::addAccount(const CentreAccount& account) {
    Query(*this)("INSERT INTO accounts (enterprise, \"user\", credential_hash, created, disabled) VALUES ($1, $2, $3, $4, $5)",
                 utf8(account.enterprise), utf8(account.user), utf8(account.credentialHash), utf8(account.created),
                 account.disabled);
}

void CPostgresCentreStore::updateAccount(const CentreAccount& account) {
    Query(*this)("UPDATE accounts SET credential_hash = $3, disabled = $4 WHERE enterprise = $1 AND \"user\" = $2",
                 utf8(account.enterprise), utf8(account.user), utf8(account.credentialHash), account.disabled);
}

std::vector<CentreAccount> CPostgresCentreStore::accounts() {
    std::vector<CentreAccount> found;
    for (const pqxx::row& row : Query(*this)(kAccountColumns + "ORDER BY enterprise, \"user\""))
        found.push_back(accountFrom(row));
    return found;
}

void CPostgresCentreStore::addSession(const CentreSession& session) {
    Query(*this)("INSERT INTO sessions (token_hash, enterprise, \"user\", last_used) VALUES ($1, $2, $3, $4)",
                 utf8(session.tokenHash), utf8(session.enterprise), utf8(session.user), session.lastUsed);
}

std::optional<CentreSession> CPostgresCentreStore::session(const CString& tokenHash) {
    const pqxx::result found = Query(*this)(
        "SELECT token_hash, enterprise, \"user\", last_used FROM sessions WHERE token_hash = $1", utf8(tokenHash));
    if (found.empty()) return std::nullopt;
    return CentreSession{text(found[0][0]), text(found[0][1]), text(found[0][2]), found[0][3].as<long long>()};
}

void CPostgresCentreStore::touchSession(const CString& tokenHash, long long lastUsed) {
    Query(*this)("UPDATE sessions SET last_used = $2 WHERE token_hash = $1", utf8(tokenHash), lastUsed);
}

void CPostgresCentreStore::removeSession(const CString& tokenHash) {
    Query(*this)("DELETE FROM sessions WHERE token_hash = $1", utf8(tokenHash));
}

void CPostgresCentreStore::removeSessionsUnusedSince(long long time) {
    Query(*this)("DELETE FROM sessions WHERE last_used < $1", time);
}

void CPostgresCentreStore::removeSessionsOf(const CString& enterprise, const CString& user) {
    Query(*this)("DELETE FROM sessions WHERE enterprise = $1 AND \"user\" = $2", utf8(enterprise), utf8(user));
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
    for (const pqxx::row& row : Query(*this)(kProjectColumns + "WHERE p.enterprise = $1 ORDER BY p.id", utf8(enterprise)))
        found.push_back(projectFrom(row));
    return found;
}

std::vector<CentreProject> CPostgresCentreStore::allProjects() {
    std::vector<CentreProject> found;
    for (const pqxx::row& row : Query(*this)(kProjectColumns + "ORDER BY p.id")) found.push_back(projectFrom(row));
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
    return addSubmittedRevision(revision, rows, CString());
}

long long CPostgresCentreStore::addSubmittedRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows,
                                                     const CString& submitKey) {
    // The revision and all its rows in one statement: one round trip, however many rows.
    const pqxx::result inserted = Query(*this)(
        "WITH revision AS (INSERT INTO revisions (node_id, number, kind, enterprise, \"user\", submitted, submit_key) "
        "VALUES ($1, $2, $3, $4, $5, $6, NULLIF($14, '')) RETURNING id), "
        "kept AS (INSERT INTO bom_rows (revision_id, position, label, name, model, count, remark, code, secondary) "
        "SELECT revision.id, row.position - 1, row.label, row.name, row.model, row.count, row.remark, row.code, row.secondary "
        "FROM revision, unnest($7::text[], $8::text[], $9::text[], $10::text[], $11::text[], $12::text[], $13::boolean[]) "
        "WITH ORDINALITY AS row (label, name, model, count, remark, code, secondary, position)) "
        "SELECT id FROM revision",
        revision.nodeId, revision.number, utf8(revision.kind), utf8(revision.enterprise), utf8(revision.user),
        utf8(revision.submitted), textArray(rows, &CentreRow::label), textArray(rows, &CentreRow::name),
        textArray(rows, &CentreRow::model), textArray(rows, &CentreRow::count), textArray(rows, &CentreRow::remark),
        textArray(rows, &CentreRow::code), secondaryArray(rows), utf8(submitKey));
    return inserted[0][0].as<long long>();
}

std::optional<CentreRevision> CPostgresCentreStore::currentRevision(long long nodeId) {
    const pqxx::result found = Query(*this)(kRevisionColumns + "WHERE node_id = $1 ORDER BY number DESC LIMIT 1", nodeId);
    if (found.empty()) return std::nullopt;
    return revisionFrom(found[0]);
}

std::optional<CentreRevision> CPostgresCentreStore::revisionOfSubmit(long long nodeId, const CString& submitKey) {
    if (submitKey.IsEmpty()) return std::nullopt;
    const pqxx::result found = Query(*this)(kRevisionColumns + "WHERE node_id = $1 AND submit_key = $2", nodeId, utf8(submitKey));
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
