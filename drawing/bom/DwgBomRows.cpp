// Reading the BOM table of a secondary drawing.
#include "drawing/bom/DwgBomRows.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/bom/BomCells.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/walk/EntityWalk.h"
#include "support/XDataHelpers.h"

namespace {

struct BomRow {
    CString name, type, count, code, price, kind, label, note;
};

struct BomColumns {
    CStringArray& names;
    CStringArray& types;
    CStringArray& counts;
    CStringArray& codes;
    CStringArray& prices;
    CStringArray& kinds;
    CStringArray& labels;
    CStringArray& notes;
    CStringArray& extras;

    void append(BomRow row) {
        // A type cell may break its text into paragraphs; the code stands in for nothing but the type.
        row.type.Replace(u"\\P", u"");
        if (row.code.IsEmpty()) row.code = row.type;
        names.Add(row.name);
        types.Add(row.type);
        counts.Add(row.count);
        codes.Add(row.code);
        prices.Add(row.price);
        kinds.Add(row.kind);
        labels.Add(row.label);
        notes.Add(row.note);
        extras.Add(CString());
    }
};

void readTypeCellValues(const AcDbObject& typeCell, BomRow& row) {
    GetXDataValue(&typeCell, QXBOM_CODE, 1000, row.code);
    GetXDataValue(&typeCell, QXBOM_PRICE, 1000, row.price);
}

BomRow readLabelRow(AcDbDatabase* database, const AcDbMText& anchor) {
    BomRow row;
    const CString self = anchor.objectHandle().text();
    QxGetTextOfObject(anchor.objectId(), row.label);

    CString typeHandle;
    row.type = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_TYPEHANDLE, QXBOM_TYPE_LABELHANDLE, &typeHandle);
    AcDbObjectId typeId;
    if (QxIsBomLink(typeHandle) && QxHandleToId(database, typeHandle, typeId)) {
        AcDbObjectPointer<AcDbEntity> typeCell(typeId, AcDb::kForRead);
        if (typeCell) readTypeCellValues(*typeCell.get(), row);
    }
    row.name = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_NAMEHANDLE, QXBOM_NAME_LABELHANDLE);
    row.count = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_COUNTHANDLE, QXBOM_COUNT_LABELHANDLE);
    row.note = QxFollowBomLink(database, anchor, self, QXBOM_LABEL_NOTEHANDLE, QXBOM_NOTE_LABELHANDLE);
    row.kind = QXBOM_KIND_SYMB2;
    return row;
}

BomRow readTypeRow(AcDbDatabase* database, const AcDbMText& anchor) {
    BomRow row;
    const CString self = anchor.objectHandle().text();
    // The type anchor's own text is taken as stored, format codes and all.
    row.type = anchor.contents();
    row.name = QxFollowBomLink(database, anchor, self, QXBOM_TYPE_NAMEHANDLE, QXBOM_NAME_TYPEHANDLE);
    readTypeCellValues(anchor, row);
    row.count = QxFollowBomLink(database, anchor, self, QXBOM_TYPE_COUNTHANDLE, QXBOM_COUNT_TYPEHANDLE);
    row.label = QxFollowBomLink(database, anchor, self, QXBOM_TYPE_LABELHANDLE, QXBOM_LABEL_TYPEHANDLE);
    row.note = QxFollowBomLink(database, anchor, self, QXBOM_TYPE_NOTEHANDLE, QXBOM_NOTE_TYPEHANDLE);
    row.kind = QXBOM_KIND_SYMB1;
    return row;
}

} // namespace

bool QxGetDwgBomRows(CString path, CStringArray& names, CStringArray& types, CStringArray& counts,
                     CStringArray& codes, CStringArray& prices, CStringArray& kinds, CStringArray& labels,
                     CStringArray& notes, CStringArray& extras) {
    const QxDwgDatabase drawing(std::move(path), 1);
    if (!drawing) return false;
    QxGetDatabaseBomRows(drawing.get(), names, types, counts, codes, prices, kinds, labels, notes, extras);
    return true;
}

void QxGetDatabaseBomRows(AcDbDatabase* database, CStringArray& names, CStringArray& types, CStringArray& counts,
                          CStringArray& codes, CStringArray& prices, CStringArray& kinds, CStringArray& labels,
                          CStringArray& notes, CStringArray& extras) {
    BomColumns columns{names, types, counts, codes, prices, kinds, labels, notes, extras};
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        const AcDbMText* cell = QxAsMText(&entity);
        if (cell == nullptr) return WalkStep::Continue;
        if (HasXData(cell, QXBOM_LABEL)) columns.append(readLabelRow(database, *cell));
        else if (HasXData(cell, QXBOM_TYPE)) columns.append(readTypeRow(database, *cell));
        return WalkStep::Continue;
    });
}
