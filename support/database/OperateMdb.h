// COperateMdb: one database file at a time, its tables listed, SQL text formed from names, values and kinds,
// and the results given back as text. Access files are read (never written) through libmdb; SQLite files
// are read and written through SQLite. The engine is chosen by the file's first bytes.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"
#include "support/database/SqlText.h"

#include <memory>

class IDatabaseEngine;

// True when `name` equals an entry of `list`, ASCII letters compared ignoring case.
QX_API bool IsNameInList(const CString& name, const CStringArray& list);

class QX_API COperateMdb {
public:
    // A missing file prints "没有找到数据库文件<path>"; a file of neither engine, or one that cannot be read,
    // leaves the object closed without a message. Every operation on a closed object fails.
    explicit COperateMdb(CString path);
    virtual ~COperateMdb();
    COperateMdb(const COperateMdb&) = delete;
    COperateMdb& operator=(const COperateMdb&) = delete;

    bool IsOpen() const { return m_pEngine != nullptr; }
    void CloseDatabase();

    // The user tables, sorted by name ignoring case; views and system tables are left out.
    void GetTableNames(CStringArray& names);
    bool TableExists(CString table);

    // One column as text after `kind` (see FieldTextOfKind); a kind without a text form repeats the previous
    // row's text. With `unique`, a text already in the output ignoring case is not added again.
    bool GetFieldValues(CString table, CString field, CStringArray& values, int kind, bool unique);
    // The same for the rows where each condition field is Like its value. Lists of unequal lengths show a
    // box and give false; no conditions give true and nothing.
    bool GetFieldValuesWhere(CString table, CString field, const CStringArray& condFields,
                             const CStringArray& condValues, CStringArray& values, int kind, bool unique);
    // The same ordered by QxTableName.UseTableName, which only a table named QxTableName can give.
    bool GetOrderedFieldValues(CString table, CString field, CStringArray& values, int kind, bool unique);
    // Whole rows, every value as text, of the rows passing the conditions (those valued QX_VTNULL_VALUE are
    // left out).
    bool SelectRows(CString table, const CStringArray& condFields, const CStringArray& condValues,
                    CArray<CStringArray>& rows);
    bool GetFieldNames(CString table, CStringArray& names);
    bool GetFieldKind(CString table, CString field, int& kind);
    // -1 when closed, for an unknown table, or when the read fails.
    int GetRecordCount(CString table);

    // Statements that change data: false on a read-only engine (Access) and wherever the engine refuses the
    // formed text.
    bool InsertRecord(CString table, const CStringArray& fields, const CStringArray& values, const CKindArray& kinds);
    bool UpdateRecords(CString table, const CStringArray& fields, const CStringArray& values, const CKindArray& kinds,
                       const CStringArray& condFields, const CStringArray& condValues, const CKindArray& condKinds);
    bool DeleteRecords(CString table, const CStringArray& fields, const CStringArray& values, const CKindArray& kinds);
    bool CreateTable(CString table, const CStringArray& fields, const CKindArray& kinds, const CArray<int>& lengths);
    bool DropTable(CString table);
    bool RenameTable(CString table, CString newName);
    bool ExecuteSql(CString sql);

private:
    bool readColumn(const struct DbSelect& query, CStringArray& values, int kind, bool unique);

    std::unique_ptr<IDatabaseEngine> m_pEngine;  // null: the database is not open
};
