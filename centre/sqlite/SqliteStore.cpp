// A small RAII layer over one SQLite file.
#include "centre/sqlite/SqliteStore.h"

#include "support/Format.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

SqliteStatement::SqliteStatement(SqliteStore& store, const char* sql) : m_store(store) {
    const int rc = sqlite3_prepare_v2(store.m_db, sql, -1, &m_statement, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(m_statement);
        m_store.fail(rc);
    }
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(m_statement); }

SqliteStatement& SqliteStatement::bind(int index, const CString& text) {
    const std::string utf8 = StoreText(text);
    sqlite3_bind_text(m_statement, index, utf8.c_str(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int index, long long value) {
    sqlite3_bind_int64(m_statement, index, value);
    return *this;
}

SqliteStatement& SqliteStatement::bindNull(int index) {
    sqlite3_bind_null(m_statement, index);
    return *this;
}

bool SqliteStatement::step() {
    const int rc = sqlite3_step(m_statement);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    m_store.fail(rc);
}

void SqliteStatement::run() {
    while (step()) {
    }
}

SqliteStatement& SqliteStatement::reset() {
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
    return *this;
}

CString SqliteStatement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    if (!bytes) return CString();
    return CString::FromUtf8(std::string_view(bytes, static_cast<size_t>(sqlite3_column_bytes(m_statement, column))));
}

long long SqliteStatement::integer(int column) const { return sqlite3_column_int64(m_statement, column); }

SqliteStore::SqliteStore(const std::string& nativePath, int busyTimeoutMs, Access access)
    : m_path(nativePath), m_busyTimeoutMs(busyTimeoutMs) {
    // Create the file ourselves so that it is never readable by others, not even for a moment.
    const bool writing = access == Access::ReadWrite;
    const int fd = writing ? ::open(nativePath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600) : ::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s cannot be opened: %s.", CString(nativePath),
                                         CString(std::strerror(errno))));
    ::close(fd);
    const int rc = sqlite3_open_v2(nativePath.c_str(), &m_db, writing ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY, nullptr);
    if (rc != SQLITE_OK) {
        const CString reason(m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(rc));
        sqlite3_close(m_db);
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s cannot be opened: %s.", CString(nativePath), reason));
    }
    sqlite3_extended_result_codes(m_db, 0);
    sqlite3_busy_timeout(m_db, busyTimeoutMs);
}

SqliteStore::~SqliteStore() { sqlite3_close(m_db); }

void SqliteStore::execute(const char* sql) {
    const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) fail(rc);
}

long long SqliteStore::lastInsertId() const { return sqlite3_last_insert_rowid(m_db); }

void SqliteStore::fail(int resultCode) const {
    const CString path(m_path);
    const CString reason(sqlite3_errmsg(m_db));
    switch (resultCode & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s is locked by another process; gave up after %d ms.", path,
                                         m_busyTimeoutMs),
                                true);
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s is damaged or is no BOM centre store (%s).", path, reason));
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_PERM:
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s cannot be written (%s).", path, reason));
    default:
        throw CCentreStoreError(QxFormat(u"The BOM centre store %s failed: %s.", path, reason));
    }
}
