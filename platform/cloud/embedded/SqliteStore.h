// A small RAII layer over one SQLite file, for the embedded BOM centre's store.
#pragma once

#include "support/CString.h"

#include <memory>
#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

class SqliteStatement {
public:
    SqliteStatement() = default;
    SqliteStatement(sqlite3* db, const char* sql);
    ~SqliteStatement();
    SqliteStatement(SqliteStatement&& other) noexcept;
    SqliteStatement& operator=(SqliteStatement&&) = delete;
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    bool valid() const { return m_statement != nullptr; }
    SqliteStatement& bind(int index, const CString& text);
    SqliteStatement& bind(int index, long long value);
    // True while a row stands; false at the end or on an error.
    bool step();
    // True when the statement ran to its end without an error.
    bool run();
    CString text(int column) const;
    long long integer(int column) const;

private:
    sqlite3_stmt* m_statement = nullptr;
    bool m_failed = false;
};

class SqliteStore {
public:
    // Opens or creates the file; a new file is made readable and writable by its owner only.
    static std::unique_ptr<SqliteStore> Open(const std::string& nativePath, std::string& error);
    ~SqliteStore();
    SqliteStore(const SqliteStore&) = delete;
    SqliteStore& operator=(const SqliteStore&) = delete;

    bool execute(const char* sql);
    SqliteStatement prepare(const char* sql) { return SqliteStatement(m_db, sql); }
    long long lastInsertId() const;

private:
    explicit SqliteStore(sqlite3* db) : m_db(db) {}
    sqlite3* m_db;
};
