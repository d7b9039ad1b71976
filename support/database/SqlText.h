// The SQL text of the database class's operations, formed by plain concatenation: names are not quoted and
// values are not escaped, so a value holding a double quote makes a statement the engine refuses.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

using CKindArray = CArray<int>;

// Field kinds, as the host's database layer numbers them.
enum : int {
    QX_KIND_SMALLINT = 2,
    QX_KIND_INTEGER = 3,
    QX_KIND_SINGLE = 4,
    QX_KIND_DOUBLE = 5,
    QX_KIND_CURRENCY = 6,
    QX_KIND_DATE = 7,
    QX_KIND_BOOLEAN = 11,
    QX_KIND_UNSIGNED_TINYINT = 17,
    QX_KIND_GUID = 72,
    QX_KIND_BINARY = 128,
    QX_KIND_CHAR = 129,
    QX_KIND_NUMERIC = 131,
    QX_KIND_LONGVARCHAR = 201,
    QX_KIND_VARWCHAR = 202,
    QX_KIND_LONGVARWCHAR = 203,
    QX_KIND_LONGVARBINARY = 205,
};

// Stands for an absent text in a condition list: such a condition is left out.
inline constexpr const char16_t* QX_VTNULL_VALUE = u"_adChar_VTNULL_空";

// SELECT T.F FROM T
QX_API CString SqlSelectField(const CString& table, const CString& field);
// SELECT * FROM T
QX_API CString SqlSelectAll(const CString& table);
// SELECT T.F FROM T WHERE T.C Like "V" AND T.D Like "W"
QX_API CString SqlSelectFieldWhere(const CString& table, const CString& field, const CStringArray& condFields,
                                   const CStringArray& condValues);
// SELECT T.F FROM T ORDER BY QxTableName.UseTableName
QX_API CString SqlSelectOrdered(const CString& table, const CString& field);
// SELECT * FROM T WHERE T.C Like "V" ..., the conditions valued QX_VTNULL_VALUE left out (and the WHERE with
// them when none is left).
QX_API CString SqlSelectRowsWhere(const CString& table, const CStringArray& condFields,
                                  const CStringArray& condValues);
// Insert Into T (F,G) Values ("V",W)
QX_API CString SqlInsert(const CString& table, const CStringArray& fields, const CStringArray& values,
                         const CKindArray& kinds);
// Update T Set T.F="V", T.G=W WHERE T.F Like "V" AND T.G Like W, with at most three conditions.
QX_API CString SqlUpdate(const CString& table, const CStringArray& fields, const CStringArray& values,
                         const CKindArray& kinds, const CStringArray& condFields, const CStringArray& condValues,
                         const CKindArray& condKinds);
// Delete From T Where T.F="V" AND T.G=W
QX_API CString SqlDelete(const CString& table, const CStringArray& fields, const CStringArray& values,
                         const CKindArray& kinds);
// CREATE TABLE T ( [F] Text(20), [G] Integer). False, with the field in `unknownField`, for a kind that has
// no type word.
QX_API bool SqlCreateTable(const CString& table, const CStringArray& fields, const CKindArray& kinds,
                           const CArray<int>& lengths, CString& sql, CString& unknownField);
// DROP TABLE T
QX_API CString SqlDropTable(const CString& table);
// SELECT * INTO "[N]" FROM "[T]"
QX_API CString SqlCopyTable(const CString& table, const CString& newName);
// DROP TABLE "[T]"
QX_API CString SqlDropQuotedTable(const CString& table);

// The statements above are in the host's dialect, where "..." is a text literal. SQLite reads "..." as a
// name first, so a value equal to a column's name would compare the column with itself: each "..." becomes
// '...' (a doubled "" inside stands for one "). An unclosed " is left as it is, for SQLite to refuse. SQLite
// also takes no table name before an assigned column: "Update T Set T.F=..." becomes "Update T Set F=...".
QX_API CString HostSqlToSqlite(const CString& sql);
