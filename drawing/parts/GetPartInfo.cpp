// Reading the part records of drawings.
#include "drawing/parts/GetPartInfo.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/bom/BomCells.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/parts/DwgLocation.h"
#include "drawing/parts/RecordGroups.h"
#include "drawing/walk/EntityWalk.h"
#include "support/TextHelpers.h"
#include "support/XDataHelpers.h"

namespace {

inline constexpr char16_t QXBOM_COMPONENT[] = u"QXBOM_COMPONENT";

// The cells of one table row, reached from its label cell.
struct LabelRow {
    CString handle;
    CString noHandle;
    CString no;
    CString type;
    CString name;
    CString count;
    CString note;
    CString location;
    CString code;
    CString price;
    CString deviceType;
};

// Where the drawing is read from, for every row it gives.
struct DrawingSource {
    const CString& path;
    int flag;
    const CString& location;
};

CStringArray xrecordLines(AcDbObject* object, const char16_t* entry) {
    CStringArray lines;
    resbuf* chain = nullptr;
    if (!QxGetXRecordChain(object, entry, chain)) return lines;
    const ResbufPtr owned(chain);
    QxChainToStrings(chain, lines);
    return lines;
}

void readTypeCell(AcDbDatabase* database, const CString& typeHandle, LabelRow& row) {
    AcDbObjectId typeId;
    if (!QxIsBomLink(typeHandle) || !QxHandleToId(database, typeHandle, typeId)) return;
    AcDbObjectPointer<AcDbEntity> typeCell(typeId, AcDb::kForRead);
    if (!typeCell) return;
    GetXDataValue(typeCell.get(), QXBOM_CODE, 1000, row.code);
    GetXDataValue(typeCell.get(), QXBOM_PRICE, 1000, row.price);
    GetXDataValue(typeCell.get(), QXBOM_DEVICETYPE, 1000, row.deviceType);
}

LabelRow readLabelRow(AcDbDatabase* database, const AcDbMText& anchor) {
    LabelRow row;
    row.handle = anchor.objectHandle().text();
    const CString& self = row.handle;
    row.no = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_NOHANDLE, QXBOM_NO_LABELHANDLE, &row.noHandle);
    CString typeHandle;
    row.type = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_TYPEHANDLE, QXBOM_TYPE_LABELHANDLE, &typeHandle);
    readTypeCell(database, typeHandle, row);
    row.name = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_NAMEHANDLE, QXBOM_NAME_LABELHANDLE);
    row.count = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_COUNTHANDLE, QXBOM_COUNT_LABELHANDLE);
    row.note = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_NOTEHANDLE, QXBOM_NOTE_LABELHANDLE);
    row.location =
        QxFollowBomLink(database, anchor, self, QXBOM_LABEL_LOCATIONHANDLE, QXBOM_LOCATION_LABELHANDLE);
    return row;
}

// A row counts when its number cell is linked and holds digits behind any leading "Z".
bool rowCounts(LabelRow& row) {
    if (row.noHandle == u"0") return false;
    row.no.TrimLeft(u'Z');
    return IsDigitString(row.no);
}

COnePartBom* makePartBom(const LabelRow& row, const CString& label, const DrawingSource& source) {
    auto* bom = new COnePartBom;
    bom->Price = row.price;
    bom->Name = row.name;
    bom->Type = row.type;
    bom->Code = row.code;
    bom->Note = row.note;
    bom->No = row.no;
    bom->Path = source.path;
    bom->PathFlag = source.flag;
    bom->DwgLocation = source.location;
    bom->Handle = row.handle;
    bom->Label = label;
    bom->Count = row.count;
    bom->DeviceType = row.deviceType;
    return bom;
}

bool holdsSameRow(const CPartBomDataBase& record, const LabelRow& row) {
    for (const COnePartBom* bom : record.PartBoms)
        if (bom->Type.EqualsNoCase(row.type) && bom->Code.EqualsNoCase(row.code) &&
            bom->Name.EqualsNoCase(row.name) && bom->Note.EqualsNoCase(row.note))
            return true;
    return false;
}

void fillGroupFields(CPartBomDataBase& record, const CStringArray& group) {
    record.ElementDesc = group[kElementDesc];
    record.SeqNo = group[kSeqNo];
    record.BoardNo = group[kBoardNo];
    record.BoardName = group[kBoardName];
    record.BoardSide = group[kBoardSide];
    record.RowSplit = group[kRowSplit];
    record.WirePathNo = group[kWirePathNo];
    record.WireStampBlock = group[kWireStampBlock];
    record.WireStampBlock.TrimRight(u':');
    record.WireStampAngle = group[kWireStampAngle];
    record.LayoutScale = group[kLayoutScale];
    record.ElementOrderNo = group[kElementOrderNo].IsEmpty() ? group[kSeqNo] : group[kElementOrderNo];
    record.ElementClass = group[kElementClass];
    record.ElementLabelDistance = group[kElementLabelDistance];
    record.CabinetDrawingBlock = group[kCabinetDrawingBlock];
    record.BreakerDrawingBlock = group[kBreakerDrawingBlock];
}

CPartBomDataBase* findRecord(CPartBomDataBaseArray& parts, const CString& location, const CString& label) {
    for (CPartBomDataBase* record : parts)
        if (record->Location == location && record->Label == label) return record;
    return nullptr;
}

COnePartBom* findRowOfLabel(CPartBomDataBaseArray& parts, const CString& label) {
    for (CPartBomDataBase* record : parts)
        for (COnePartBom* bom : record->PartBoms)
            if (bom->Label == label) return bom;
    return nullptr;
}

void addLabelsOfRow(const RecordGroups& labels, const LabelRow& row, const DrawingSource& source,
                    CPartBomDataBaseArray& parts) {
    // A location cell with text moves the device there, whatever the drawing says.
    const CString& location = row.location.IsEmpty() ? source.location : row.location;
    for (const CStringArray& group : labels.groups) {
        const CString& label = group[kLabel];
        if (label == u" ") continue;
        if (CPartBomDataBase* record = findRecord(parts, location, label)) {
            if (!holdsSameRow(*record, row)) record->PartBoms.Add(makePartBom(row, label, source));
            continue;
        }
        auto* record = new CPartBomDataBase;
        record->Location = location;
        record->Label = label;
        record->MergedLabels = labels.last[kMergedLabels];
        for (const CStringArray& first : labels.groups) {
            if (first[kLabel] != label) continue;
            fillGroupFields(*record, first);
            break;
        }
        record->PartBoms.Add(makePartBom(row, label, source));
        parts.Add(record);
    }
}

void addComponents(const RecordGroups& components, CPartBomDataBaseArray& parts) {
    for (const CStringArray& group : components.groups) {
        COnePartBom* bom = findRowOfLabel(parts, group[kComponentLabel]);
        if (bom == nullptr) continue;
        auto* component = new COneComponent;
        component->Name = group[kComponentName];
        component->Type = group[kComponentType];
        component->Code = group[kComponentCode];
        component->Count = group[kComponentCount];
        bom->Components.Add(component);
    }
}

} // namespace

bool CGetPartInfo::GetPartsOfDwgs(const CStringArray& drawings, CPartBomDataBaseArray& parts) const {
    if (drawings.IsEmpty()) return false;
    for (const CString& path : drawings) GetPartsOfOneDwg(path, 1, parts);
    return true;
}

bool CGetPartInfo::GetPartsOfOneDwg(CString path, int flag, CPartBomDataBaseArray& parts) const {
    const QxDwgDatabase drawing(path, flag);
    if (!drawing) return false;
    CString location;
    QxGetDwgLocation(drawing.get(), location);
    return GetPartsOfDatabase(drawing.get(), path, flag, location, parts);
}

bool CGetPartInfo::GetPartsOfDatabase(AcDbDatabase* database, CString path, int flag, CString location,
                                      CPartBomDataBaseArray& parts) const {
    if (database == nullptr) return false;
    const DrawingSource source{path, flag, location};
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        AcDbMText* cell = QxAsMText(&entity);
        if (cell == nullptr || !HasXData(cell, QXBOM_LABEL)) return WalkStep::Continue;
        const RecordGroups labels = QxSplitRecordGroups(xrecordLines(cell, QXBOM_LABEL), LabelRecordKeys());
        LabelRow row = readLabelRow(database, *cell);
        if (!rowCounts(row)) return WalkStep::Continue;
        const RecordGroups components =
            QxSplitRecordGroups(xrecordLines(cell, QXBOM_COMPONENT), ComponentRecordKeys());
        addLabelsOfRow(labels, row, source, parts);
        addComponents(components, parts);
        return WalkStep::Continue;
    });
    return true;
}
