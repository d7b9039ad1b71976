// Building the cabinet groups of a primary diagram.
#include "drawing/assembly/ReferGroups.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/access/QxHostCalls.h"
#include "drawing/assembly/CircuitMarker.h"
#include "drawing/assembly/CircuitRows.h"
#include "drawing/assembly/LinkedSymbols.h"
#include "drawing/assembly/ReferDrawing.h"
#include "drawing/primary/CircuitBom.h"
#include "platform/host/Documents.h"
#include "support/XDataHelpers.h"

#include <memory>
#include <unordered_map>

namespace {

// The counted parts of one circuit.
struct CircuitTable {
    CircuitRowKeys keys;
    CStringArray types;
    CStringArray codes;
    CStringArray names;
    CStringArray counts;
    // The last block reference read decides the marker step.
    bool lastWantsMarker = false;
    AcDbObjectId lastBlock;
};

void addReferenceRows(AcDbDatabase* database, AcDbObjectId id, CircuitTable& table) {
    AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
    if (!reference) return;
    CStringArray types, codes, names, counts, prices, newAddInfo;
    table.lastWantsMarker = QxGetCircuitBom(reference.get(), types, codes, names, counts, prices, newAddInfo);
    table.lastBlock = reference->blockTableRecord();
    const CString own = reference->objectHandle().text();
    CString master;
    GetXDataValue(reference.get(), QX_SYMB1_TYPEHANDLE, 1005, master);

    CStringArray linked;
    QxGetLinkedSymbols(database, master, QX_SYMB1_TYPEHANDLE, linked);
    const CString key = linked.Find(own) >= 0 ? master : CString();
    QxAddCircuitRows(table.keys, table.types, table.codes, table.names, table.counts, key, types, codes, names,
                     counts);
}

void fillParts(const CircuitTable& table, CReferSourcePartArray& parts) {
    for (int i = 0; i < table.types.GetSize(); ++i) {
        auto* part = new CReferSourcePartBomInfo;
        part->m_strType = table.types[i];
        part->m_strCode = table.codes[i].IsEmpty() ? table.types[i] : table.codes[i];
        part->m_strName = table.names[i];
        part->m_strCount = table.counts[i];
        parts.Add(part);
    }
}

void addMarkerIfMissing(const CircuitTable& table) {
    if (!table.lastWantsMarker) return;
    QxLockCurDoc();
    if (!QxBlockHasCircuitMarker(table.lastBlock)) QxAddCircuitMarker(table.lastBlock);
    QxUnlockCurDoc();
}

// The first group of each name, so that a cabinet's drawers find their group without a search.
class GroupIndex {
public:
    explicit GroupIndex(CReferSourceGroupArray& groups) : m_groups(groups) {
        for (CReferSourceGroupInfo* group : groups) m_first.emplace(group->m_strName, group);
    }
    CReferSourceGroupInfo* find(const CString& name) const {
        const auto it = m_first.find(name);
        return it == m_first.end() ? nullptr : it->second;
    }
    CReferSourceGroupInfo* add(std::unique_ptr<CReferSourceGroupInfo> group) {
        CReferSourceGroupInfo* added = group.release();
        m_groups.Add(added);
        m_first.emplace(added->m_strName, added);
        return added;
    }

private:
    CReferSourceGroupArray& m_groups;
    std::unordered_map<CString, CReferSourceGroupInfo*> m_first;
};

void addDrawer(const CCir1Attrubute& circuit, const CircuitTable& table, const CString& cabinet,
               const CString& drawerName, GroupIndex& index) {
    CReferSourceGroupInfo* group = index.find(cabinet);
    if (group == nullptr) {
        auto made = std::make_unique<CReferSourceGroupInfo>();
        made->m_strName = cabinet;
        made->m_strUse = circuit.Use;
        made->m_strType = circuit.Type;
        group = index.add(std::move(made));
    }
    auto drawer = std::make_unique<CDrawerInfo>();
    drawer->m_strName = drawerName;
    drawer->m_strDrawing = circuit.SecondaryDrawings;
    fillParts(table, drawer->m_arrParts);
    QxReadReferDrawing(*drawer);
    group->m_arrDrawers.Add(drawer.release());
}

void addPlainGroup(const CCir1Attrubute& circuit, const CircuitTable& table, GroupIndex& index) {
    auto group = std::make_unique<CReferSourceGroupInfo>();
    group->m_strName = circuit.No;
    group->m_strUse = circuit.Use;
    group->m_strType = circuit.Type;
    group->m_strDrawing = circuit.SecondaryDrawings;
    fillParts(table, group->m_arrParts);
    QxReadReferDrawing(*group);
    index.add(std::move(group));
}

} // namespace

bool QxSplitCircuitNo(const CString& no, CString& cabinet, CString& drawer) {
    const int open = no.Find(u'(');
    const int close = no.Find(u')');
    if (open <= 0 || close < 1) return false;
    cabinet = no.Left(open);
    drawer = no.Mid(open + 1);
    drawer.Trim(u')');
    return true;
}

void QxBuildReferGroups(CCir1AttrubuteArray& circuits, CReferSourceGroupArray& groups, CString path) {
    GroupIndex index(groups);
    for (const CCir1Attrubute* circuit : circuits) {
        if (circuit == nullptr) continue;
        CircuitTable table;
        // The database stays open through the marker step, which writes to the circuit's block definition.
        const QxDwgDatabase drawing(path, 1);
        if (drawing) {
            std::vector<AcDbObjectId> ids;
            for (const CString& handle : circuit->Handles) {
                AcDbObjectId id;
                if (QxHandleToId(drawing.get(), handle, id)) ids.push_back(id);
            }
            AcDbDatabase* working = acdbHostApplicationServices()->workingDatabase();
            for (const AcDbObjectId id : ids) addReferenceRows(working, id, table);
        }

        CString cabinet;
        CString drawer;
        if (QxSplitCircuitNo(circuit->No, cabinet, drawer)) addDrawer(*circuit, table, cabinet, drawer, index);
        else addPlainGroup(*circuit, table, index);
        addMarkerIfMissing(table);
    }
}
