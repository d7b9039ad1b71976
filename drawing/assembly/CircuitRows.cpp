// Counting the parts of a circuit.
#include "drawing/assembly/CircuitRows.h"

#include "support/Format.h"
#include "support/NumberText.h"

#include <algorithm>

namespace {

int findRow(const CStringArray& types, const CStringArray& codes, const CStringArray& names, const CString& type,
            const CString& code, const CString& name) {
    for (int j = 0; j < types.GetSize(); ++j)
        if (types[j].EqualsNoCase(type) && codes[j].EqualsNoCase(code) && names[j].EqualsNoCase(name)) return j;
    return -1;
}

// True when the key was in the list already; a new key joins the list.
bool noteKey(CStringArray& list, const CString& key) {
    for (const CString& known : list)
        if (!key.IsEmpty() && key == known) return true;
    list.Add(key);
    return false;
}

} // namespace

bool QxAddCircuitRows(CircuitRowKeys& keys, CStringArray& types, CStringArray& codes, CStringArray& names,
                      CStringArray& counts, CString key, const CStringArray& inTypes, const CStringArray& inCodes,
                      const CStringArray& inNames, const CStringArray& inCounts) {
    const int rows = types.GetSize();
    if (codes.GetSize() != rows || names.GetSize() != rows || counts.GetSize() != rows || keys.GetSize() != rows)
        return false;
    const int inRows = inTypes.GetSize();
    if (inCodes.GetSize() != inRows || inNames.GetSize() != inRows || inCounts.GetSize() != inRows) return false;

    for (int i = 0; i < inRows; ++i) {
        if (inTypes[i].IsEmpty() && inCodes[i].IsEmpty()) continue;
        const int j = findRow(types, codes, names, inTypes[i], inCodes[i], inNames[i]);
        if (j < 0) {
            types.Add(inTypes[i]);
            codes.Add(inCodes[i]);
            names.Add(inNames[i]);
            counts.Add(inCounts[i]);
            keys.Add(CStringArray{key});
            continue;
        }
        const bool duplicate = noteKey(keys[j], key);
        const int added = QxToInt(inCounts[i]);
        if (added < 1 || duplicate) continue;
        const long long sum = static_cast<long long>(std::max(QxToInt(counts[j]), 0)) + added;
        counts[j] = QxFormat(u"%d", sum);
    }
    return true;
}
