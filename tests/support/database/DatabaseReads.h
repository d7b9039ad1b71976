// The database's reads, one call a line: what a read gives, or kFailed alone when it says it failed.
#pragma once

#include "support/database/OperateMdb.h"

#include <vector>

using Values = std::vector<CString>;
inline const CString kFailed = u"<read failed>";

inline Values valuesOf(const CStringArray& list) { return {list.begin(), list.end()}; }

inline Values columnOf(COperateMdb& db, const CString& table, const CString& field, int kind, bool unique = false) {
    CStringArray values;
    return db.GetFieldValues(table, field, values, kind, unique) ? valuesOf(values) : Values{kFailed};
}

// The integer field `field` of the rows whose `fields` are Like `patterns`.
inline Values whereOf(COperateMdb& db, const CString& table, const CString& field, const CStringArray& fields,
                      const CStringArray& patterns) {
    CStringArray values;
    return db.GetFieldValuesWhere(table, field, fields, patterns, values, QX_KIND_INTEGER, false) ? valuesOf(values)
                                                                                                 : Values{kFailed};
}

// Each row's cells joined by "|".
inline Values rowsOf(COperateMdb& db, const CString& table, const CStringArray& fields, const CStringArray& patterns) {
    CArray<CStringArray> rows;
    if (!db.SelectRows(table, fields, patterns, rows)) return rows.IsEmpty() ? Values{kFailed} : Values{kFailed, u"rows"};
    Values joined;
    for (const CStringArray& row : rows) {
        CString line;
        for (int i = 0; i < row.GetSize(); ++i) line += (i ? CString(u"|") : CString()) + row[i];
        joined.push_back(line);
    }
    return joined;
}

inline Values tablesOf(COperateMdb& db) {
    CStringArray names;
    db.GetTableNames(names);
    return valuesOf(names);
}

inline Values fieldsOf(COperateMdb& db, const CString& table) {
    CStringArray names;
    return db.GetFieldNames(table, names) ? valuesOf(names) : Values{kFailed};
}

inline int kindOf(COperateMdb& db, const CString& table, const CString& field) {
    int kind = 0;
    return db.GetFieldKind(table, field, kind) ? kind : -1;
}
