// A small RAII layer over one SQLite file, for the embedded BOM centre. Every failure throws
// CCentreStoreError with words for the person: locked, damaged, not writable.
#pragma once

#include "centre/operations/CentreError.h"
#include "centre/operations/CentreStore.h"

#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

class SqliteStore;

class SqliteStatement {
public:
    SqliteStatement(SqliteStore& store, const char* sql);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    SqliteStatement& bind(int index, const CString& text);
    SqliteStatement& bind(int index, long long value);
    SqliteStatement& bindNull(int index);
    // True while a row stands, false at the end.
    bool step();
    // Runs the statement to its end.
    void run();
    // Ready to run again with new values.
    SqliteStatement& reset();
    CString text(int column) const;
    long long integer(int column) const;

private:
    SqliteStore& m_store;
    sqlite3_stmt* m_statement = nullptr;
};

class SqliteStore {
public:
    enum class Access { ReadWrite, ReadOnly };
    // Opens the file; for writing it is created when missing, readable and writable by its owner only. A
    // store locked by another process is waited for up to busyTimeoutMs before an operation gives up.
    SqliteStore(const std::string& nativePath, int busyTimeoutMs, Access access);
    ~SqliteStore();
    SqliteStore(const SqliteStore&) = delete;
    SqliteStore& operator=(const SqliteStore&) = delete;

    void execute(const char* sql);
    SqliteStatement prepare(const char* sql) { return SqliteStatement(*this, sql); }
    long long lastInsertId() const;
    const std::string& path() const { return m_path; }

    // Throws the error that SQLite's result code stands for.
    [[noreturn]] void fail(int resultCode) const;

private:
    friend class SqliteStatement;
    sqlite3* m_db = nullptr;
    std::string m_path;
    int m_busyTimeoutMs;
};
