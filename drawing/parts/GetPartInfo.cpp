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

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

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

void fillGroupFields(CPartBomDataBase& record, const RecordGroups& groups, size_t group) {
    record.ElementDesc = groups.value(group, kElementDesc);
    record.SeqNo = groups.value(group, kSeqNo);
    record.BoardNo = groups.value(group, kBoardNo);
    record.BoardName = groups.value(group, kBoardName);
    record.BoardSide = groups.value(group, kBoardSide);
    record.RowSplit = groups.value(group, kRowSplit);
    record.WirePathNo = groups.value(group, kWirePathNo);
    record.WireStampBlock = groups.value(group, kWireStampBlock);
    record.WireStampBlock.TrimRight(u':');
    record.WireStampAngle = groups.value(group, kWireStampAngle);
    record.LayoutScale = groups.value(group, kLayoutScale);
    record.ElementOrderNo = groups.value(group, kElementOrderNo);
    if (record.ElementOrderNo.IsEmpty()) record.ElementOrderNo = record.SeqNo;
    record.ElementClass = groups.value(group, kElementClass);
    record.ElementLabelDistance = groups.value(group, kElementLabelDistance);
    record.CabinetDrawingBlock = groups.value(group, kCabinetDrawingBlock);
    record.BreakerDrawingBlock = groups.value(group, kBreakerDrawingBlock);
}

// What the merge looks up, so that each look-up is one step however many records there are: the record
// of each location and label, the rows each record holds (type, code, name and note, ignoring case), and
// the first row of each label in array order.
class PartIndex {
public:
    explicit PartIndex(const CPartBomDataBaseArray& parts) {
        for (CPartBomDataBase* record : parts) {
            addRecord(*record);
            for (COnePartBom* bom : record->PartBoms) noteRow(*record, *bom);
        }
    }

    CPartBomDataBase* findRecord(const CString& location, const CString& label) const {
        const auto found = m_records.find(joined({&location, &label}));
        return found == m_records.end() ? nullptr : found->second;
    }
    bool holdsSameRow(const CPartBomDataBase& record, const LabelRow& row) const {
        return m_rows.contains(rowKey(record, row.type, row.code, row.name, row.note));
    }
    COnePartBom* firstRowOfLabel(const CString& label) const {
        const auto found = m_firstRows.find(label);
        return found == m_firstRows.end() ? nullptr : found->second;
    }
    void addRecord(CPartBomDataBase& record) { m_records.emplace(joined({&record.Location, &record.Label}), &record); }
    // Rows are only appended, to a record that already holds a row of its label or to a new record at the
    // end, so the first row of a label stays the first once it is known.
    void noteRow(const CPartBomDataBase& record, COnePartBom& bom) {
        m_rows.insert(rowKey(record, bom.Type, bom.Code, bom.Name, bom.Note));
        m_firstRows.emplace(bom.Label, &bom);
    }

private:
    // Texts joined with each one's length in front, so that no two lists of texts give the same key.
    static std::u16string joined(std::initializer_list<const CString*> texts) {
        std::u16string key;
        for (const CString* text : texts) {
            key += static_cast<char16_t>(text->GetLength() & 0xFFFF);
            key += static_cast<char16_t>(text->GetLength() >> 16);
            key += text->view();
        }
        return key;
    }
    static std::u16string rowKey(const CPartBomDataBase& record, CString type, CString code, CString name,
                                 CString note) {
        std::u16string key = joined({&type.MakeUpper(), &code.MakeUpper(), &name.MakeUpper(), &note.MakeUpper()});
        const auto address = reinterpret_cast<std::uintptr_t>(&record);
        for (size_t shift = 0; shift < sizeof(address) * 8; shift += 16)
            key += static_cast<char16_t>((address >> shift) & 0xFFFF);
        return key;
    }

    std::unordered_map<std::u16string, CPartBomDataBase*> m_records;
    std::unordered_set<std::u16string> m_rows;
    std::unordered_map<CString, COnePartBom*> m_firstRows;
};

// The first group of each label of a cell.
std::unordered_map<CString, size_t> firstGroupOfLabels(const RecordGroups& labels) {
    std::unordered_map<CString, size_t> first;
    for (size_t group = 0; group < labels.size(); ++group) first.emplace(labels.value(group, kLabel), group);
    return first;
}

void addLabelsOfRow(const RecordGroups& labels, const LabelRow& row, const DrawingSource& source,
                    CPartBomDataBaseArray& parts, PartIndex& index) {
    // A location cell with text moves the device there, whatever the drawing says.
    const CString& location = row.location.IsEmpty() ? source.location : row.location;
    const CSharedText mergedLabels(labels.lastValue(kMergedLabels));
    const std::unordered_map<CString, size_t> firstGroups = firstGroupOfLabels(labels);
    for (size_t group = 0; group < labels.size(); ++group) {
        const CString label = labels.value(group, kLabel);
        if (label == u" ") continue;
        CPartBomDataBase* record = index.findRecord(location, label);
        if (record == nullptr) {
            auto made = std::make_unique<CPartBomDataBase>();
            made->Location = location;
            made->Label = label;
            made->MergedLabels = mergedLabels;
            fillGroupFields(*made, labels, firstGroups.at(label));
            record = made.get();
            parts.Add(made.release());
            index.addRecord(*record);
        } else if (index.holdsSameRow(*record, row)) {
            continue;
        }
        COnePartBom* bom = makePartBom(row, label, source);
        record->PartBoms.Add(bom);
        index.noteRow(*record, *bom);
    }
}

void addComponents(const RecordGroups& components, const PartIndex& index) {
    for (size_t group = 0; group < components.size(); ++group) {
        COnePartBom* bom = index.firstRowOfLabel(components.value(group, kComponentLabel));
        if (bom == nullptr) continue;
        auto* component = new COneComponent;
        component->Name = components.value(group, kComponentName);
        component->Type = components.value(group, kComponentType);
        component->Code = components.value(group, kComponentCode);
        component->Count = components.value(group, kComponentCount);
        bom->Components.Add(component);
    }
}

void readParts(AcDbDatabase* database, const DrawingSource& source, CPartBomDataBaseArray& parts, PartIndex& index) {
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        AcDbMText* cell = QxAsMText(&entity);
        if (cell == nullptr || !HasXData(cell, QXBOM_LABEL)) return WalkStep::Continue;
        LabelRow row = readLabelRow(database, *cell);
        if (!rowCounts(row)) return WalkStep::Continue;
        const RecordGroups labels(xrecordLines(cell, QXBOM_LABEL), LabelRecordKeys());
        const RecordGroups components(xrecordLines(cell, QXBOM_COMPONENT), ComponentRecordKeys());
        addLabelsOfRow(labels, row, source, parts, index);
        addComponents(components, index);
        return WalkStep::Continue;
    });
}

bool readPartsOfOneDwg(const CString& path, int flag, CPartBomDataBaseArray& parts, PartIndex& index) {
    const QxDwgDatabase drawing(path, flag);
    if (!drawing) return false;
    CString location;
    QxGetDwgLocation(drawing.get(), location);
    readParts(drawing.get(), DrawingSource{path, flag, location}, parts, index);
    return true;
}

} // namespace

bool CGetPartInfo::GetPartsOfDwgs(const CStringArray& drawings, CPartBomDataBaseArray& parts) const {
    if (drawings.IsEmpty()) return false;
    PartIndex index(parts);
    for (const CString& path : drawings) readPartsOfOneDwg(path, 1, parts, index);
    return true;
}

bool CGetPartInfo::GetPartsOfOneDwg(CString path, int flag, CPartBomDataBaseArray& parts) const {
    PartIndex index(parts);
    return readPartsOfOneDwg(path, flag, parts, index);
}

bool CGetPartInfo::GetPartsOfDatabase(AcDbDatabase* database, CString path, int flag, CString location,
                                      CPartBomDataBaseArray& parts) const {
    if (database == nullptr) return false;
    PartIndex index(parts);
    readParts(database, DrawingSource{path, flag, location}, parts, index);
    return true;
}
