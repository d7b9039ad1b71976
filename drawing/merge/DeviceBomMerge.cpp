// Filling the BOM arrays of a device node.
#include "drawing/merge/DeviceBomMerge.h"

#include "drawing/DrawingReads.h"
#include "drawing/ExtractionState.h"
#include "drawing/merge/CabinetCheck.h"
#include "drawing/parts/GetPartInfo.h"
#include "platform/host/Progress.h"
#include "project/ProjectFiles.h"
#include "support/Format.h"
#include "support/NumberText.h"
#include "support/PathText.h"
#include "support/TextHelpers.h"

namespace {

// Frees the part records however the caller leaves.
struct PartRecordsHolder {
    CPartBomDataBaseArray parts;
    ~PartRecordsHolder() { QxFreePartBoms(parts); }
};

CString cell(const CStringArray& column, int k) {
    return k < column.GetSize() ? column[k] : CString();
}

BOM_INFO rowOfDrawing(const CBomOfDwg& rows, int k) {
    BOM_INFO row;
    row.m_strRowName = cell(rows.Names, k);
    row.m_strRowModel = cell(rows.Types, k);
    row.m_strRowCount = cell(rows.Counts, k);
    row.m_strRowCode = cell(rows.Codes, k);
    return row;
}

BOM_INFO rowOfPart(const CReferSourcePartBomInfo& part) {
    BOM_INFO row;
    row.m_strRowName = part.m_strName;
    row.m_strRowModel = part.m_strType;
    row.m_strRowCount = part.m_strCount;
    row.m_strRowCode = part.m_strCode;
    return row;
}

int findRow(const BomRows& rows, const BOM_INFO& row) {
    for (int i = 0; i < rows.GetSize(); ++i)
        if (rows[i].m_strRowName == row.m_strRowName && rows[i].m_strRowModel == row.m_strRowModel) return i;
    return -1;
}

// A part that counts as primary does not count as secondary as well: one secondary row of its name and
// model goes.
void removeOneSecondaryRow(BomRows& secondary, const BOM_INFO& part) {
    const int i = findRow(secondary, part);
    if (i >= 0) secondary.RemoveAt(i);
}

void addParts(const CReferSourcePartArray& parts, HMProjectTree_INFO& node) {
    for (const CReferSourcePartBomInfo* part : parts) {
        const BOM_INFO row = rowOfPart(*part);
        QxAddBomRow(node.m_arrPrimaryBom, row);
        removeOneSecondaryRow(node.m_arrSecondaryBom, row);
    }
}

void mergeGroup(const CReferSourceGroupInfo& group, HMProjectTree_INFO& node) {
    if (!group.m_arrDrawers.IsEmpty()) {
        // Settled once: the first drawer's rows do not keep the further drawers' rows out.
        const bool skip = !node.m_arrSecondaryBom.IsEmpty();
        for (const CDrawerInfo* drawer : group.m_arrDrawers) {
            if (!skip)
                for (const CBomOfDwg* rows : drawer->m_arrDwgBoms)
                    for (int k = 0; k < rows->Labels.GetSize(); ++k)
                        QxAddBomRow(node.m_arrSecondaryBom, rowOfDrawing(*rows, k));
            addParts(drawer->m_arrParts, node);
        }
        return;
    }
    if (node.m_arrSecondaryBom.IsEmpty())
        for (const CBomOfDwg* rows : group.m_arrDwgBoms)
            for (int k = 0; k < rows->Labels.GetSize(); ++k) node.m_arrSecondaryBom.Add(rowOfDrawing(*rows, k));
    addParts(group.m_arrParts, node);
}

bool isOneOf(const CString& name, const CStringArray& pieces) {
    for (const CString& piece : pieces)
        if (piece == name) return true;
    return false;
}

} // namespace

void QxAddBomRow(BomRows& rows, const BOM_INFO& row) {
    const int i = findRow(rows, row);
    if (i < 0) {
        rows.Add(BOM_INFO(row));
        return;
    }
    const long long sum = static_cast<long long>(QxToInt(rows[i].m_strRowCount)) + QxToInt(row.m_strRowCount);
    rows[i].m_strRowCount = QxFormat(u"%d", sum);
}

void QxGetDeviceSecondaryRows(CString prjPath, BomRows& rows) {
    // The step that reads a device's drawings is what makes a project's walk long.
    ShowProgressLine(QxFormat(u"device %s: reading its drawings", RemoveFileExtension(GetFileNameOfPath(prjPath))));
    rows.RemoveAll();
    CStringArray drawings;
    ListDrawingsOfFile(prjPath, drawings);
    PartRecordsHolder records;
    CGetPartInfo().GetPartsOfDwgs(drawings, records.parts);
    // Nothing after the walk reads a device's own drawings: the command need not keep them.
    if (CDrawingReadScope* reads = CDrawingReadScope::active()) reads->forget(drawings);

    CString heldName, heldType, heldCount;
    for (const CPartBomDataBase* record : records.parts) {
        for (const COnePartBom* bom : record->PartBoms) {
            if (bom->Count != u"1" && bom->Name == heldName && bom->Type == heldType && bom->Count == heldCount)
                continue;
            heldName = bom->Name;
            heldType = bom->Type;
            heldCount = bom->Count;
            BOM_INFO row;
            row.m_strRowLabel = bom->Label;
            row.m_strRowName = bom->Name;
            row.m_strRowModel = bom->Type;
            row.m_strRowCount = bom->Count;
            row.m_strRowRemark = bom->Note;
            row.m_strRowCode = bom->Code;
            rows.Add(row);
        }
    }
}

bool QxMergeDeviceBom(HMProjectTree_INFO* node) {
    if (node == nullptr) return true;
    CString numbers = node->m_strCirNo;
    numbers.Replace(u"，", u",");
    CStringArray pieces;
    const bool listed = numbers.Contains(u",");
    if (listed) {
        SplitString(numbers, u",", pieces);
        node->m_nCabCount = pieces.GetSize();
    }
    if (g_arrReferGroups.IsEmpty()) return true;

    int first = -1;
    for (int i = 0; i < g_arrReferGroups.GetSize(); ++i) {
        const CReferSourceGroupInfo& group = *g_arrReferGroups[i];
        if (!listed) {
            if (group.m_strName == node->m_strCirNo) mergeGroup(group, *node);
            continue;
        }
        if (group.m_strName != numbers && !isOneOf(group.m_strName, pieces)) continue;
        if (first > -1) {
            if (!QxCheckCabinetsEqual(first, i)) return false;
            continue;
        }
        mergeGroup(group, *node);
        first = i;
    }
    return true;
}
