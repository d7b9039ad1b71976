// COperateMdb: the operations of the database class over whichever engine reads the file.
#include "support/database/OperateMdb.h"

#include "platform/host/HostOutput.h"
#include "support/FileUtils.h"
#include "support/database/DatabaseEngine.h"
#include "support/database/FieldText.h"

#include <algorithm>

namespace {

const char16_t* const kCaption = u"Corvane";

template <typename A, typename B, typename C>
bool sameNonZeroLength(const A& a, const B& b, const C& c) {
    return a.GetSize() > 0 && a.GetSize() == b.GetSize() && b.GetSize() == c.GetSize();
}

std::vector<DbCondition> likeConditions(const CStringArray& fields, const CStringArray& values, bool skipAbsent) {
    std::vector<DbCondition> conditions;
    for (int i = 0; i < fields.GetSize() && i < values.GetSize(); ++i) {
        if (skipAbsent && values[i] == QX_VTNULL_VALUE) continue;
        conditions.push_back({fields[i], values[i]});
    }
    return conditions;
}

} // namespace

bool IsNameInList(const CString& name, const CStringArray& list) {
    return std::any_of(list.begin(), list.end(), [&](const CString& item) { return item.EqualsNoCase(name); });
}

COperateMdb::COperateMdb(CString path) {
    if (!FileExists(path)) {
        acutPrintf(u"\n%s\n", QxFormat(u"没有找到数据库文件%s", path));
        return;
    }
    m_pEngine = OpenDatabaseEngine(path);
}

COperateMdb::~COperateMdb() = default;

void COperateMdb::CloseDatabase() { m_pEngine.reset(); }

void COperateMdb::GetTableNames(CStringArray& names) {
    names.RemoveAll();
    if (!m_pEngine) return;
    std::vector<DbTableEntry> tables;
    if (!m_pEngine->ListTables(tables)) return;
    std::vector<CString> kept;
    for (const DbTableEntry& table : tables)
        if (table.type == u"TABLE") kept.push_back(table.name);
    std::stable_sort(kept.begin(), kept.end(), [](const CString& a, const CString& b) { return a.CompareNoCase(b) < 0; });
    for (const CString& name : kept) names.Add(name);
}

bool COperateMdb::TableExists(CString table) {
    CStringArray names;
    GetTableNames(names);
    return IsNameInList(table, names);
}

bool COperateMdb::readColumn(const DbSelect& query, CStringArray& values, int kind, bool unique) {
    DbResult result;
    if (!m_pEngine->Select(query, result) || result.names.empty()) return false;
    CString text;
    for (const auto& row : result.rows) {
        CString current;
        if (FieldTextOfKind(row[0], kind, current)) text = current;
        if (!unique || !IsNameInList(text, values)) values.Add(text);
    }
    return true;
}

bool COperateMdb::GetFieldValues(CString table, CString field, CStringArray& values, int kind, bool unique) {
    values.RemoveAll();
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    DbSelect query{SqlSelectField(table, field), table, field, {}, {}, {}};
    return readColumn(query, values, kind, unique);
}

bool COperateMdb::GetFieldValuesWhere(CString table, CString field, const CStringArray& condFields,
                                      const CStringArray& condValues, CStringArray& values, int kind, bool unique) {
    values.RemoveAll();
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    if (condFields.GetSize() != condValues.GetSize()) {
        MessageBoxW(nullptr, u"程序员应用此函数,传入的参数有错误,请检查!", kCaption, MB_OK | MB_ICONINFORMATION);
        return false;
    }
    if (condFields.IsEmpty()) return true;
    DbSelect query{SqlSelectFieldWhere(table, field, condFields, condValues), table, field,
                   likeConditions(condFields, condValues, false), {}, {}};
    return readColumn(query, values, kind, unique);
}

bool COperateMdb::GetOrderedFieldValues(CString table, CString field, CStringArray& values, int kind, bool unique) {
    values.RemoveAll();
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    DbSelect query{SqlSelectOrdered(table, field), table, field, {}, u"QxTableName", u"UseTableName"};
    return readColumn(query, values, kind, unique);
}

bool COperateMdb::SelectRows(CString table, const CStringArray& condFields, const CStringArray& condValues,
                             CArray<CStringArray>& rows) {
    rows.RemoveAll();
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    if (condFields.IsEmpty() || condFields.GetSize() != condValues.GetSize()) return false;
    DbSelect query{SqlSelectRowsWhere(table, condFields, condValues), table, {},
                   likeConditions(condFields, condValues, true), {}, {}};
    DbResult result;
    if (!m_pEngine->Select(query, result)) return false;
    for (const auto& row : result.rows) {
        CStringArray texts;
        for (const DbValue& value : row) texts.Add(FieldText(value));
        rows.Add(texts);
    }
    return true;
}

bool COperateMdb::GetFieldNames(CString table, CStringArray& names) {
    names.RemoveAll();
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    DbResult result;
    if (!m_pEngine->Select({SqlSelectAll(table), table, {}, {}, {}, {}}, result)) return false;
    for (const CString& name : result.names) names.Add(name);
    return true;
}

bool COperateMdb::GetFieldKind(CString table, CString field, int& kind) {
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return false;
    DbResult result;
    if (!m_pEngine->Select({SqlSelectField(table, field), table, field, {}, {}, {}}, result)) return false;
    if (result.kinds.empty()) return false;
    kind = result.kinds[0];
    return true;
}

int COperateMdb::GetRecordCount(CString table) {
    if (!m_pEngine || table.IsEmpty() || !TableExists(table)) return -1;
    DbResult result;
    if (!m_pEngine->Select({SqlSelectAll(table), table, {}, {}, {}, {}}, result)) return -1;
    return static_cast<int>(result.rows.size());
}

bool COperateMdb::InsertRecord(CString table, const CStringArray& fields, const CStringArray& values,
                               const CKindArray& kinds) {
    if (!m_pEngine || !TableExists(table) || !sameNonZeroLength(fields, values, kinds)) return false;
    return m_pEngine->Execute(SqlInsert(table, fields, values, kinds));
}

bool COperateMdb::UpdateRecords(CString table, const CStringArray& fields, const CStringArray& values,
                                const CKindArray& kinds, const CStringArray& condFields,
                                const CStringArray& condValues, const CKindArray& condKinds) {
    if (!m_pEngine || !TableExists(table)) return false;
    if (!sameNonZeroLength(fields, values, kinds) || !sameNonZeroLength(condFields, condValues, condKinds)) return false;
    return m_pEngine->Execute(SqlUpdate(table, fields, values, kinds, condFields, condValues, condKinds));
}

bool COperateMdb::DeleteRecords(CString table, const CStringArray& fields, const CStringArray& values,
                                const CKindArray& kinds) {
    if (!m_pEngine || !TableExists(table) || !sameNonZeroLength(fields, values, kinds)) return false;
    return m_pEngine->Execute(SqlDelete(table, fields, values, kinds));
}

bool COperateMdb::CreateTable(CString table, const CStringArray& fields, const CKindArray& kinds,
                              const CArray<int>& lengths) {
    if (!m_pEngine) return false;
    if (TableExists(table)) {
        MessageBoxW(nullptr, u"该表名数据库中已经有了,请更换表名", kCaption, MB_OK | MB_ICONWARNING);
        return false;
    }
    table.Replace(u' ', u'_');
    table.Replace(u'-', u'_');
    if (table.IsEmpty() || !sameNonZeroLength(fields, kinds, lengths)) return false;
    CString sql;
    CString unknownField;
    if (!SqlCreateTable(table, fields, kinds, lengths, sql, unknownField)) {
        MessageBoxW(nullptr, QxFormat(u"Enum Error:%s unknow. Create Table false.", unknownField), kCaption,
                    MB_OK | MB_ICONINFORMATION);
        return false;
    }
    return m_pEngine->Execute(sql);
}

bool COperateMdb::DropTable(CString table) {
    if (!m_pEngine || !TableExists(table)) return false;
    return m_pEngine->Execute(SqlDropTable(table));
}

bool COperateMdb::RenameTable(CString table, CString newName) {
    if (!m_pEngine || !TableExists(table)) return false;
    if (TableExists(newName)) {
        MessageBoxW(nullptr, u"数据库表名已经存在! ", kCaption, MB_OK | MB_ICONINFORMATION);
        return false;
    }
    return m_pEngine->Execute(SqlCopyTable(table, newName)) && m_pEngine->Execute(SqlDropQuotedTable(table));
}

bool COperateMdb::ExecuteSql(CString sql) { return m_pEngine && m_pEngine->Execute(sql); }
