// The SQL text of the database class's operations.
#include "support/database/SqlText.h"

#include "support/Format.h"

namespace {

CString quoted(const CString& value) { return u"\"" + value + u"\""; }

CString valueOfKind(const CString& value, int kind) { return kind == QX_KIND_CHAR ? quoted(value) : value; }

CString qualified(const CString& table, const CString& field) { return table + u"." + field; }

// Conditions "T.C Like "V"" joined by " AND ", conditions valued `skipValue` left out.
CString likeConditions(const CString& table, const CStringArray& fields, const CStringArray& values,
                       const CString& skipValue) {
    CString text;
    for (int i = 0; i < fields.GetSize() && i < values.GetSize(); ++i) {
        if (!skipValue.IsEmpty() && values[i] == skipValue) continue;
        if (!text.IsEmpty()) text += u" AND ";
        text += qualified(table, fields[i]) + u" Like " + quoted(values[i]);
    }
    return text;
}

const char16_t* typeWord(int kind) {
    switch (kind) {
    case QX_KIND_INTEGER: return u"Integer";
    case QX_KIND_SINGLE: return u"adSingle";
    case QX_KIND_DOUBLE: return u"adDouble";
    case QX_KIND_CURRENCY: return u"adCurrency";
    case QX_KIND_DATE: return u"adDate";
    case QX_KIND_BOOLEAN: return u"adBoolean";
    case QX_KIND_UNSIGNED_TINYINT: return u"adUnsignedTinyInt";
    case QX_KIND_GUID: return u"adGUID";
    case QX_KIND_LONGVARCHAR: return u"adLongVarChar";
    default: return nullptr;
    }
}

} // namespace

CString SqlSelectField(const CString& table, const CString& field) {
    return u"SELECT " + qualified(table, field) + u" FROM " + table;
}

CString SqlSelectAll(const CString& table) { return QxFormat(u"SELECT * FROM %s", table); }

CString SqlSelectFieldWhere(const CString& table, const CString& field, const CStringArray& condFields,
                            const CStringArray& condValues) {
    return SqlSelectField(table, field) + u" WHERE " + likeConditions(table, condFields, condValues, CString());
}

CString SqlSelectOrdered(const CString& table, const CString& field) {
    return SqlSelectField(table, field) + u" ORDER BY QxTableName.UseTableName";
}

CString SqlSelectRowsWhere(const CString& table, const CStringArray& condFields, const CStringArray& condValues) {
    const CString conditions = likeConditions(table, condFields, condValues, QX_VTNULL_VALUE);
    if (conditions.IsEmpty()) return SqlSelectAll(table);
    return SqlSelectAll(table) + u" WHERE " + conditions;
}

CString SqlInsert(const CString& table, const CStringArray& fields, const CStringArray& values,
                  const CKindArray& kinds) {
    CString names;
    CString items;
    for (int i = 0; i < fields.GetSize() && i < values.GetSize() && i < kinds.GetSize(); ++i) {
        if (i > 0) {
            names += u",";
            items += u",";
        }
        names += fields[i];
        items += valueOfKind(values[i], kinds[i]);
    }
    return u"Insert Into " + table + u" (" + names + u") Values (" + items + u")";
}

CString SqlUpdate(const CString& table, const CStringArray& fields, const CStringArray& values,
                  const CKindArray& kinds, const CStringArray& condFields, const CStringArray& condValues,
                  const CKindArray& condKinds) {
    CString text = u"Update " + table + u" Set ";
    for (int i = 0; i < fields.GetSize() && i < values.GetSize() && i < kinds.GetSize(); ++i) {
        if (i > 0) text += u", ";
        text += qualified(table, fields[i]) + u"=" + valueOfKind(values[i], kinds[i]);
    }
    text += u" WHERE ";
    for (int i = 0; i < 3 && i < condFields.GetSize() && i < condValues.GetSize() && i < condKinds.GetSize(); ++i) {
        if (condKinds[i] == QX_KIND_CHAR && condValues[i] == QX_VTNULL_VALUE) continue;
        text += qualified(table, condFields[i]) + u" Like " + valueOfKind(condValues[i], condKinds[i]) + u" AND ";
    }
    if (text.EndsWith(u" AND ")) text = text.Left(text.GetLength() - 5);
    return text;
}

CString SqlDelete(const CString& table, const CStringArray& fields, const CStringArray& values,
                  const CKindArray& kinds) {
    CString text = u"Delete From " + table + u" Where ";
    for (int i = 0; i < fields.GetSize() && i < values.GetSize() && i < kinds.GetSize(); ++i) {
        if (i > 0) text += u" AND ";
        text += qualified(table, fields[i]) + u"=" + valueOfKind(values[i], kinds[i]);
    }
    return text;
}

bool SqlCreateTable(const CString& table, const CStringArray& fields, const CKindArray& kinds,
                    const CArray<int>& lengths, CString& sql, CString& unknownField) {
    sql = u"CREATE TABLE " + table + u" (";
    for (int i = 0; i < fields.GetSize() && i < kinds.GetSize(); ++i) {
        CString type;
        if (kinds[i] == QX_KIND_CHAR) {
            type = QxFormat(u"Text(%d)", i < lengths.GetSize() ? lengths[i] : 0);
        } else if (const char16_t* word = typeWord(kinds[i])) {
            type = word;
        } else {
            unknownField = fields[i];
            return false;
        }
        sql += (i == 0 ? u" [" : u", [") + fields[i] + u"] " + type;
    }
    sql += u")";
    return true;
}

CString SqlDropTable(const CString& table) { return u"DROP TABLE " + table; }

CString SqlCopyTable(const CString& table, const CString& newName) {
    return u"SELECT * INTO \"[" + newName + u"]\" FROM \"[" + table + u"]\"";
}

CString SqlDropQuotedTable(const CString& table) { return u"DROP TABLE \"[" + table + u"]\""; }

namespace {

bool isSqlSpace(char16_t ch) { return ch == u' ' || ch == u'\t' || ch == u'\r' || ch == u'\n'; }

char16_t foldAscii(char16_t ch) { return ch >= u'a' && ch <= u'z' ? static_cast<char16_t>(ch - u'a' + u'A') : ch; }

// Whether `word` stands at `at`, ASCII letters compared ignoring case.
bool wordAt(const std::u16string& text, size_t at, std::u16string_view word) {
    if (at + word.size() > text.size()) return false;
    for (size_t k = 0; k < word.size(); ++k)
        if (foldAscii(text[at + k]) != foldAscii(word[k])) return false;
    return true;
}

// Whether the keyword `word` stands at `at` on its own, not as part of a longer name.
bool keywordAt(const std::u16string& text, size_t at, std::u16string_view word) {
    if (!wordAt(text, at, word)) return false;
    const size_t end = at + word.size();
    return (at == 0 || isSqlSpace(text[at - 1]) || text[at - 1] == u')') && (end == text.size() || isSqlSpace(text[end]));
}

size_t skipSpace(const std::u16string& text, size_t at) {
    while (at < text.size() && isSqlSpace(text[at])) ++at;
    return at;
}

// Behind a literal '...' (with '' inside), a name [...] or a stray "... starting at `at`.
size_t skipQuoted(const std::u16string& text, size_t at) {
    const char16_t open = text[at];
    const char16_t close = open == u'[' ? u']' : open;
    size_t end = at + 1;
    for (;;) {
        end = text.find(close, end);
        if (end == std::u16string::npos) return text.size();
        if (open == u'\'' && end + 1 < text.size() && text[end + 1] == u'\'') {
            end += 2;
            continue;
        }
        return end + 1;
    }
}

// SQLite takes no table name before a column that Set assigns: in "Update T Set T.F=..., T.G=... WHERE
// ..." each "T." at the head of an assignment goes; everything else stays as written.
std::u16string unqualifyUpdateTargets(const std::u16string& sql) {
    size_t at = skipSpace(sql, 0);
    if (!keywordAt(sql, at, u"UPDATE")) return sql;
    at = skipSpace(sql, at + 6);
    const size_t tableStart = at;
    while (at < sql.size() && !isSqlSpace(sql[at])) ++at;
    const std::u16string qualifier = sql.substr(tableStart, at - tableStart) + u".";
    at = skipSpace(sql, at);
    if (!keywordAt(sql, at, u"SET")) return sql;
    at += 3;

    std::u16string out = sql.substr(0, at);
    int depth = 0;
    bool itemStart = true;
    while (at < sql.size()) {
        if (itemStart) {
            const size_t target = skipSpace(sql, at);
            out.append(sql, at, target - at);
            at = target;
            if (wordAt(sql, at, qualifier)) at += qualifier.size();
            itemStart = false;
            continue;
        }
        const char16_t ch = sql[at];
        if (ch == u'\'' || ch == u'[' || ch == u'"') {
            const size_t end = skipQuoted(sql, at);
            out.append(sql, at, end - at);
            at = end;
            continue;
        }
        if (depth == 0 && keywordAt(sql, at, u"WHERE")) break;
        if (ch == u'(') ++depth;
        if (ch == u')' && depth > 0) --depth;
        if (ch == u',' && depth == 0) itemStart = true;
        out += ch;
        ++at;
    }
    out.append(sql, at, std::u16string::npos);
    return out;
}

// The host's "..." literals as SQLite's '...'.
std::u16string sqliteLiterals(const std::u16string& in) {
    std::u16string out;
    size_t i = 0;
    while (i < in.size()) {
        const char16_t ch = in[i];
        if (ch == u'\'' || ch == u'[') {
            // Literals and bracketed names pass through whole, so a " inside them is left alone.
            const char16_t close = ch == u'[' ? u']' : u'\'';
            const size_t end = in.find(close, i + 1);
            const size_t stop = end == std::u16string::npos ? in.size() : end + 1;
            out.append(in, i, stop - i);
            i = stop;
            continue;
        }
        if (ch != u'"') {
            out += ch;
            ++i;
            continue;
        }
        std::u16string literal;
        size_t j = i + 1;
        bool closed = false;
        while (j < in.size()) {
            if (in[j] == u'"' && j + 1 < in.size() && in[j + 1] == u'"') {
                literal += u'"';
                j += 2;
            } else if (in[j] == u'"') {
                closed = true;
                break;
            } else {
                literal += in[j] == u'\'' ? u"''" : std::u16string(1, in[j]);
                ++j;
            }
        }
        if (!closed) {
            out.append(in, i, std::u16string::npos);
            break;
        }
        out += u'\'' + literal + u'\'';
        i = j + 1;
    }
    return out;
}

} // namespace

CString HostSqlToSqlite(const CString& sql) {
    return CString(unqualifyUpdateTargets(sqliteLiterals(sql.str())));
}
