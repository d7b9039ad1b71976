// The engines behind COperateMdb: a small interface that an Access reader and SQLite both fill, so that the
// class forms its statements once and each engine answers them in its own way.
#pragma once

#include "support/CString.h"

#include <memory>
#include <string>
#include <vector>

// One value as the engine holds it.
struct DbValue {
    enum class Type { Null, Integer, Real, Text };
    Type type = Type::Null;
    long long integer = 0;
    double real = 0;
    CString text;

    static DbValue OfInteger(long long v) { return {Type::Integer, v, 0, {}}; }
    static DbValue OfReal(double v) { return {Type::Real, 0, v, {}}; }
    static DbValue OfText(CString v) { return {Type::Text, 0, 0, std::move(v)}; }
};

// A table as the engine lists it; `type` is "TABLE", "VIEW" or "SYSTEM TABLE".
struct DbTableEntry {
    CString name;
    CString type;
};

// A condition of a read: field Like "value".
struct DbCondition {
    CString field;
    CString value;
};

// A read, both as the statement text and taken apart, for an engine that runs no SQL.
struct DbSelect {
    CString sql;
    CString table;
    CString field;  // empty: every field
    std::vector<DbCondition> conditions;
    CString orderTable;  // with orderField: the ORDER BY
    CString orderField;
};

struct DbResult {
    std::vector<CString> names;
    std::vector<int> kinds;  // the field kinds, numbered as QX_KIND_*
    std::vector<std::vector<DbValue>> rows;
};

class IDatabaseEngine {
public:
    virtual ~IDatabaseEngine() = default;
    virtual bool ListTables(std::vector<DbTableEntry>& tables) = 0;
    // False when the engine refuses the read (unknown field, bad statement, unreadable file).
    virtual bool Select(const DbSelect& query, DbResult& result) = 0;
    // Runs a statement that changes data or structure; false when the engine refuses it.
    virtual bool Execute(const CString& sql) = 0;
};

// The engine for the file at a logic path, chosen by its first 4 KB; null for a file that is neither an
// Access nor a SQLite database, or that cannot be read.
std::unique_ptr<IDatabaseEngine> OpenDatabaseEngine(const CString& logicPath);

// Access files (.mdb of Jet 3 and Jet 4, .accdb), read whole into memory; read-only.
std::unique_ptr<IDatabaseEngine> OpenAccessEngine(std::string bytes);
std::unique_ptr<IDatabaseEngine> OpenSqliteEngine(const std::string& nativePath);
