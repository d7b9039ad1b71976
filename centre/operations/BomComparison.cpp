// Comparing a device's rows with the centre's, and the table that shows the outcome.
#include "centre/operations/BomComparison.h"

#include "support/Format.h"

#include <algorithm>
#include <climits>
#include <map>
#include <tuple>

namespace {

using PartKey = std::tuple<bool, std::u16string, std::u16string>;

struct Totals {
    std::vector<PartKey> order;
    std::map<PartKey, long long> counts;
};

Totals totalsOf(const std::vector<CentreRow>& rows) {
    Totals totals;
    for (const CentreRow& row : rows) {
        const PartKey key{row.secondary, row.name.str(), row.model.str()};
        auto [it, added] = totals.counts.try_emplace(key, 0);
        if (added) totals.order.push_back(key);
        it->second = std::min(it->second + RowCountValue(row.count), static_cast<long long>(INT_MAX));
    }
    return totals;
}

RowDifference difference(RowChange change, const PartKey& key, long long centre, long long local) {
    return {change, std::get<0>(key), CString(std::get<1>(key)), CString(std::get<2>(key)), centre, local};
}

// Columns a terminal gives the character: two for the East Asian wide ranges, one otherwise.
int columnsOf(char16_t ch) {
    const bool wide = (ch >= 0x1100 && ch <= 0x115F) || (ch >= 0x2E80 && ch <= 0xA4CF) || (ch >= 0xAC00 && ch <= 0xD7A3) ||
                      (ch >= 0xF900 && ch <= 0xFAFF) || (ch >= 0xFE30 && ch <= 0xFE4F) || (ch >= 0xFF00 && ch <= 0xFF60) ||
                      (ch >= 0xFFE0 && ch <= 0xFFE6);
    return wide ? 2 : 1;
}

int columnsOf(const CString& text) {
    int columns = 0;
    for (const char16_t ch : text.view()) columns += columnsOf(ch);
    return columns;
}

CString padded(const CString& text, int columns) {
    return text + CString(u' ', std::max(0, columns - columnsOf(text)));
}

CString changeWord(RowChange change) {
    switch (change) {
    case RowChange::Added: return u"added";
    case RowChange::Removed: return u"removed";
    case RowChange::CountChanged: return u"count changed";
    }
    return CString();
}

CString countText(long long count) { return QxFormat(u"%d", count); }

void appendTable(CString& out, const std::vector<RowDifference>& differences) {
    using Cells = std::vector<CString>;
    std::vector<Cells> lines{{u"change", u"system", u"name", u"model", u"centre", u"drawings"}};
    for (const RowDifference& d : differences) {
        lines.push_back({changeWord(d.change), d.secondary ? u"secondary" : u"primary", d.name, d.model,
                         d.change == RowChange::Added ? CString(u"-") : countText(d.centreCount),
                         d.change == RowChange::Removed ? CString(u"-") : countText(d.localCount)});
    }
    std::vector<int> widths(lines.front().size(), 0);
    for (const Cells& cells : lines)
        for (size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], columnsOf(cells[i]));
    for (const Cells& cells : lines) {
        CString line = u"  ";
        for (size_t i = 0; i < cells.size(); ++i) line += i + 1 == cells.size() ? cells[i] : padded(cells[i], widths[i]) + u"  ";
        line.TrimRight();
        out += line + u"\n";
    }
}

} // namespace

long long RowCountValue(const CString& count) {
    long long value = 0;
    for (const char16_t ch : count.view()) {
        if (ch < u'0' || ch > u'9') break;
        value = std::min(value * 10 + (ch - u'0'), static_cast<long long>(INT_MAX));
    }
    return value;
}

std::vector<RowDifference> CompareRows(const std::vector<CentreRow>& centre, const std::vector<CentreRow>& local) {
    const Totals before = totalsOf(centre);
    const Totals after = totalsOf(local);
    std::vector<RowDifference> differences;
    for (const PartKey& key : after.order) {
        const long long localCount = after.counts.at(key);
        const auto found = before.counts.find(key);
        if (found == before.counts.end()) differences.push_back(difference(RowChange::Added, key, 0, localCount));
        else if (found->second != localCount)
            differences.push_back(difference(RowChange::CountChanged, key, found->second, localCount));
    }
    for (const PartKey& key : before.order)
        if (!after.counts.contains(key)) differences.push_back(difference(RowChange::Removed, key, before.counts.at(key), 0));
    return differences;
}

CString FormatComparison(const std::vector<DeviceComparison>& devices) {
    CString out;
    int differing = 0;
    for (const DeviceComparison& device : devices) {
        if (!device.known) {
            out += QxFormat(u"Device %s: the centre does not know it (ID \"%s\"); not compared.\n", device.name, device.id);
            ++differing;
            continue;
        }
        if (device.differences.empty()) {
            out += QxFormat(u"Device %s (ID %s): the same as revision %d of the centre.\n", device.name, device.id,
                            device.revision);
            continue;
        }
        ++differing;
        out += QxFormat(u"Device %s (ID %s): %d differences from revision %d of the centre.\n", device.name, device.id,
                        static_cast<long long>(device.differences.size()), device.revision);
        appendTable(out, device.differences);
    }
    out += QxFormat(u"BOM comparison: %d devices, %d differ from the centre.\n", static_cast<long long>(devices.size()),
                    differing);
    return out;
}
