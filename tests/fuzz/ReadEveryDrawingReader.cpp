// Every reader above the drawing model over one drawing, with the shape of each result checked.
#include "ReadEveryDrawingReader.h"

#include "FuzzSupport.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/WorkingDatabaseScope.h"
#include "drawing/bom/DwgBomRows.h"
#include "drawing/parts/DwgLocation.h"
#include "drawing/parts/GetPartInfo.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "drawing/primary/SysHead.h"
#include "drawing/title/TitleBlock.h"
#include "platform/host/Documents.h"

namespace fuzz {
namespace {

struct CircuitsHolder {
    CCir1AttrubuteArray circuits;
    ~CircuitsHolder() { QxFreeCircuits(circuits); }
};

struct PartsHolder {
    CPartBomDataBaseArray parts;
    ~PartsHolder() { QxFreePartBoms(parts); }
};

void readBomTable(AcDbDatabase* database) {
    CStringArray names, types, counts, codes, prices, kinds, labels, notes, extras;
    QxGetDatabaseBomRows(database, names, types, counts, codes, prices, kinds, labels, notes, extras);
    const int rows = names.GetSize();
    for (const CStringArray* column : {&types, &counts, &codes, &prices, &kinds, &labels, &notes, &extras})
        Require(column->GetSize() == rows, "the BOM table gives nine columns of one length");
    for (const CString& kind : kinds) Require(kind == u"Symb1" || kind == u"Symb2", "a BOM row is of kind Symb1 or Symb2");
}

void readCircuitBom(AcDbDatabase* database, const CString& handle) {
    AcDbObjectId id;
    if (!QxHandleToId(database, handle, id)) return;
    AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
    if (!reference) return;
    CStringArray types, codes, names, counts, prices, newAddInfo;
    QxGetCircuitBom(reference.get(), types, codes, names, counts, prices, newAddInfo);
    Require(prices.GetSize() == types.GetSize(), "a circuit BOM gives a price per type");
}

void readCircuits(AcDbDatabase* database, const CString& path) {
    CircuitsHolder holder;
    {
        const WorkingDatabaseScope working(database);
        QxGetPrimaryCircuits(path, 1, holder.circuits);
    }
    for (const CCir1Attrubute* circuit : holder.circuits) {
        Require(circuit != nullptr, "every circuit record is there");
        const int references = circuit->Handles.GetSize();
        Require(circuit->DwgPaths.GetSize() == references && circuit->DwgFlags.GetSize() == references,
                "a circuit names path, mode and handle of each of its references");
        for (const CString& handle : circuit->Handles) readCircuitBom(database, handle);
    }
}

void readPartRecords(AcDbDatabase* database, const CString& path) {
    CString location;
    QxGetDwgLocation(database, location);
    PartsHolder holder;
    CGetPartInfo().GetPartsOfDatabase(database, path, 1, location, holder.parts);
    for (const CPartBomDataBase* part : holder.parts) {
        Require(part != nullptr, "every part record is there");
        for (const COnePartBom* row : part->PartBoms) {
            Require(row != nullptr, "every BOM row of a part is there");
            for (const COneComponent* component : row->Components) Require(component != nullptr, "every component is there");
        }
    }
}

} // namespace

void ReadAsTheExtractionDoes(AcDbDatabase* database, const CString& path) {
    readBomTable(database);
    CString number, name;
    QxGetDwgTitle(database, number, name);
    bool found1 = false, foundBus = false, found2 = false;
    CString text1, textBus, text2;
    AcDbObjectId id1, id2, idBus;
    QxReadSysHead(database, found1, foundBus, found2, text1, textBus, text2, id1, id2, idBus);
    readCircuits(database, path);
    readPartRecords(database, path);
}

} // namespace fuzz
