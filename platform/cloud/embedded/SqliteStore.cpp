// A small RAII layer over one SQLite file.
#include "platform/cloud/embedded/SqliteStore.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

SqliteStatement::SqliteStatement(sqlite3* db, const char* sql) {
    if (sqlite3_prepare_v2(db, sql, -1, &m_statement, nullptr) != SQLITE_OK) m_statement = nullptr;
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(m_statement); }

SqliteStatement::SqliteStatement(SqliteStatement&& other) noexcept
    : m_statement(other.m_statement), m_failed(other.m_failed) {
    other.m_statement = nullptr;
}

SqliteStatement& SqliteStatement::bind(int index, const CString& text) {
    const std::string utf8 = text.ToUtf8();
    if (m_statement) sqlite3_bind_text(m_statement, index, utf8.c_str(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, long long value) {
    if (m_statement) sqlite3_bind_int64(m_statement, index, value);
    return *this;
}

bool SqliteStatement::step() {
    if (!m_statement || m_failed) return false;
    const int rc = sqlite3_step(m_statement);
    if (rc == SQLITE_ROW) return true;
    if (rc != SQLITE_DONE) m_failed = true;
    return false;
}

bool SqliteStatement::run() {
    while (step()) {
    }
    return m_statement && !m_failed;
}

CString SqliteStatement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    return bytes ? CString::FromUtf8(std::string_view(bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))))
                 : CString();
}

long long SqliteStatement::integer(int column) const { return sqlite3_column_int64(m_statement, column); }

std::unique_ptr<SqliteStore> SqliteStore::Open(const std::string& nativePath, std::string& error) {
    // Create the file ourselves so that it is never readable by others, not even for a moment.
    const int fd = ::open(nativePath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        error = "cannot create the file";
        return nullptr;
    }
    ::close(fd);
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(nativePath.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        error = db ? sqlite3_errmsg(db) : "cannot open the file";
        sqlite3_close(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, 5000);
    std::unique_ptr<SqliteStore> store(new SqliteStore(db));
    if (!store->execute("PRAGMA foreign_keys = ON")) {
        error = sqlite3_errmsg(db);
        return nullptr;
    }
    return store;
}

SqliteStore::~SqliteStore() { sqlite3_close(m_db); }

bool SqliteStore::execute(const char* sql) { return sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

long long SqliteStore::lastInsertId() const { return sqlite3_last_insert_rowid(m_db); }
