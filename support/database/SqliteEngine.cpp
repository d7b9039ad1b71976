// The SQLite engine: runs the statements as SQLite reads the host's dialect.
#include "support/Encoding.h"
#include "support/database/DatabaseEngine.h"
#include "support/database/SqlText.h"

#include <sqlite3.h>

namespace {

// A writer elsewhere may hold the file for a moment; past that, the operation fails like a locked file.
constexpr int kBusyMilliseconds = 250;

CString upper(const CString& text) {
    CString out = text;
    out.MakeUpper();
    return out;
}

// The kind of a declared column type: the type words that CREATE TABLE writes, then SQLite's own affinity
// rules for everything else.
int kindOfDeclaredType(const CString& declared) {
    const CString type = upper(declared);
    static const std::pair<const char16_t*, int> kWords[] = {
        {u"ADSINGLE", QX_KIND_SINGLE},     {u"ADDOUBLE", QX_KIND_DOUBLE},
        {u"ADCURRENCY", QX_KIND_CURRENCY}, {u"ADDATE", QX_KIND_DATE},
        {u"ADBOOLEAN", QX_KIND_BOOLEAN},   {u"ADUNSIGNEDTINYINT", QX_KIND_UNSIGNED_TINYINT},
        {u"ADGUID", QX_KIND_GUID},         {u"ADLONGVARCHAR", QX_KIND_LONGVARCHAR},
    };
    for (const auto& [word, kind] : kWords)
        if (type == word) return kind;
    if (type.Contains(u"INT")) return QX_KIND_INTEGER;
    if (type.Contains(u"CHAR") || type.Contains(u"TEXT") || type.Contains(u"CLOB")) return QX_KIND_VARWCHAR;
    if (type.Contains(u"BLOB")) return QX_KIND_LONGVARBINARY;
    if (type.Contains(u"REAL") || type.Contains(u"FLOA") || type.Contains(u"DOUB")) return QX_KIND_DOUBLE;
    if (type.Contains(u"BOOL")) return QX_KIND_BOOLEAN;
    if (type.Contains(u"DATE") || type.Contains(u"TIME")) return QX_KIND_DATE;
    if (type.Contains(u"NUMERIC") || type.Contains(u"DECIMAL")) return QX_KIND_NUMERIC;
    return QX_KIND_VARWCHAR;
}

int kindOfValue(const DbValue& value) {
    switch (value.type) {
    case DbValue::Type::Integer: return QX_KIND_INTEGER;
    case DbValue::Type::Real: return QX_KIND_DOUBLE;
    default: return QX_KIND_VARWCHAR;
    }
}

DbValue columnValue(sqlite3_stmt* statement, int c) {
    switch (sqlite3_column_type(statement, c)) {
    case SQLITE_INTEGER: return DbValue::OfInteger(sqlite3_column_int64(statement, c));
    case SQLITE_FLOAT: return DbValue::OfReal(sqlite3_column_double(statement, c));
    case SQLITE_NULL: return DbValue();
    default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, c));
        const int length = sqlite3_column_bytes(statement, c);
        return DbValue::OfText(CString(Utf8ToUtf16(std::string_view(text ? text : "", text ? length : 0))));
    }
    }
}

// Whether the text behind a statement holds nothing SQLite would run: white space, comments, semicolons.
bool holdsNoStatement(sqlite3* db, const char* tail) {
    while (*tail) {
        sqlite3_stmt* next = nullptr;
        const char* rest = nullptr;
        const int rc = sqlite3_prepare_v2(db, tail, -1, &next, &rest);
        const bool empty = rc == SQLITE_OK && next == nullptr;
        sqlite3_finalize(next);
        if (!empty || rest == tail) return empty;
        tail = rest;
    }
    return true;
}

// Exactly one statement: text that holds a second one behind the first is refused whole, so that a value
// cut short by a quote can never run a statement of its own.
class Statement {
public:
    Statement(sqlite3* db, const CString& sql) {
        const std::string text = sql.ToUtf8();
        const char* tail = nullptr;
        const bool prepared =
            sqlite3_prepare_v2(db, text.c_str(), static_cast<int>(text.size()), &m_statement, &tail) == SQLITE_OK;
        if (!prepared || !m_statement || !holdsNoStatement(db, tail)) {
            sqlite3_finalize(m_statement);
            m_statement = nullptr;
        }
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt* get() const { return m_statement; }

private:
    sqlite3_stmt* m_statement = nullptr;
};

class SqliteEngine final : public IDatabaseEngine {
public:
    explicit SqliteEngine(sqlite3* db) : m_db(db) {}
    ~SqliteEngine() override { sqlite3_close_v2(m_db); }
    SqliteEngine(const SqliteEngine&) = delete;
    SqliteEngine& operator=(const SqliteEngine&) = delete;

    bool ListTables(std::vector<DbTableEntry>& tables) override {
        tables.clear();
        Statement statement(m_db, u"SELECT type, name FROM sqlite_master WHERE type IN ('table','view')");
        if (!statement.get()) return false;
        int rc;
        while ((rc = sqlite3_step(statement.get())) == SQLITE_ROW) {
            const CString type = columnValue(statement.get(), 0).text;
            const CString name = columnValue(statement.get(), 1).text;
            const bool internal = upper(name).StartsWith(u"SQLITE_");
            tables.push_back({name, type == u"view" ? u"VIEW" : internal ? u"SYSTEM TABLE" : u"TABLE"});
        }
        return rc == SQLITE_DONE;
    }

    bool Select(const DbSelect& query, DbResult& result) override {
        result = DbResult();
        Statement statement(m_db, HostSqlToSqlite(query.sql));
        sqlite3_stmt* s = statement.get();
        if (!s) return false;
        const int columns = sqlite3_column_count(s);
        for (int c = 0; c < columns; ++c) {
            const char* name = sqlite3_column_name(s, c);
            const char* declared = sqlite3_column_decltype(s, c);
            result.names.push_back(CString(Utf8ToUtf16(name ? name : "")));
            result.kinds.push_back(declared ? kindOfDeclaredType(CString(Utf8ToUtf16(declared))) : 0);
        }
        int rc;
        while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
            std::vector<DbValue> row;
            for (int c = 0; c < columns; ++c) row.push_back(columnValue(s, c));
            result.rows.push_back(std::move(row));
        }
        if (rc != SQLITE_DONE) {
            result = DbResult();
            return false;
        }
        // A column without a declared type (an expression) takes the kind of what it holds.
        for (int c = 0; c < columns; ++c) {
            if (result.kinds[c] != 0) continue;
            result.kinds[c] = result.rows.empty() ? QX_KIND_VARWCHAR : kindOfValue(result.rows[0][c]);
        }
        return true;
    }

    bool Execute(const CString& sql) override {
        Statement statement(m_db, HostSqlToSqlite(sql));
        if (!statement.get()) return false;
        int rc;
        while ((rc = sqlite3_step(statement.get())) == SQLITE_ROW) {
        }
        return rc == SQLITE_DONE;
    }

private:
    sqlite3* m_db;
};

} // namespace

std::unique_ptr<IDatabaseEngine> OpenSqliteEngine(const std::string& nativePath) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(nativePath.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        sqlite3_close_v2(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, kBusyMilliseconds);
    auto engine = std::make_unique<SqliteEngine>(db);
    // A damaged, encrypted or locked file shows itself at its first read: treat it as not open.
    std::vector<DbTableEntry> tables;
    if (!engine->ListTables(tables)) return nullptr;
    return engine;
}
