// The Access engine: answers reads from a snapshot of the file, evaluating the conditions itself; the file
// is never written.
#include "support/database/AccessConditions.h"
#include "support/database/AccessSnapshot.h"
#include "support/database/DatabaseEngine.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace {

std::optional<size_t> columnIndex(const AccessTable& table, const CString& field) {
    for (size_t c = 0; c < table.columns.size(); ++c)
        if (SameDbName(table.columns[c].name, field)) return c;
    return std::nullopt;
}

class AccessEngine final : public IDatabaseEngine {
public:
    explicit AccessEngine(AccessSnapshot snapshot) : m_snapshot(std::move(snapshot)) {}

    bool ListTables(std::vector<DbTableEntry>& tables) override {
        tables.clear();
        for (const AccessTable& table : m_snapshot.tables)
            tables.push_back({table.name, table.system ? u"SYSTEM TABLE" : u"TABLE"});
        return true;
    }

    bool Select(const DbSelect& query, DbResult& result) override {
        result = DbResult();
        const AccessTable* table = findTable(query.table);
        if (!table) return false;

        // Like the provider, a name it cannot place makes the whole statement fail.
        std::vector<size_t> selected(table->columns.size());
        std::iota(selected.begin(), selected.end(), size_t{0});
        if (!query.field.IsEmpty()) {
            const auto c = columnIndex(*table, query.field);
            if (!c) return false;
            selected = {*c};
        }
        std::vector<std::pair<size_t, CString>> conditions;
        for (const DbCondition& condition : query.conditions) {
            const auto c = columnIndex(*table, condition.field);
            const auto pattern = QuotedValueText(condition.value);
            if (!c || !pattern) return false;
            conditions.emplace_back(*c, *pattern);
        }
        std::optional<size_t> orderColumn;
        if (!query.orderField.IsEmpty()) {
            if (!SameDbName(query.orderTable, table->name)) return false;
            orderColumn = columnIndex(*table, query.orderField);
            if (!orderColumn) return false;
        }

        std::vector<const std::vector<DbValue>*> rows;
        for (const auto& row : table->rows) {
            const bool passes = std::all_of(conditions.begin(), conditions.end(),
                                            [&](const auto& cond) { return ValueIsLike(row[cond.first], cond.second); });
            if (passes) rows.push_back(&row);
        }
        if (orderColumn) {
            std::stable_sort(rows.begin(), rows.end(), [&](const auto* a, const auto* b) {
                return ValueOrdersBefore((*a)[*orderColumn], (*b)[*orderColumn]);
            });
        }

        for (size_t c : selected) {
            result.names.push_back(table->columns[c].name);
            result.kinds.push_back(table->columns[c].kind);
        }
        for (const auto* row : rows) {
            std::vector<DbValue> out;
            for (size_t c : selected) out.push_back((*row)[c]);
            result.rows.push_back(std::move(out));
        }
        return true;
    }

    bool Execute(const CString&) override { return false; }

private:
    const AccessTable* findTable(const CString& name) const {
        for (const AccessTable& table : m_snapshot.tables)
            if (!table.system && table.readable && SameDbName(table.name, name)) return &table;
        return nullptr;
    }

    AccessSnapshot m_snapshot;
};

} // namespace

std::unique_ptr<IDatabaseEngine> OpenAccessEngine(std::string bytes) {
    AccessSnapshot snapshot;
    if (!ReadAccessSnapshot(bytes, snapshot)) return nullptr;
    return std::make_unique<AccessEngine>(std::move(snapshot));
}
