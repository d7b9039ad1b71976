// A drawing as the host opens one beside the editor, then read the way the extraction reads it: every
// entity of every block with its extents, xdata and the xrecords of its extension dictionary.
#include "FuzzSupport.h"

#include "drawing/access/QxDwgOpen.h"
#include "drawing/model/AcDb.h"

namespace {

// The xrecords directly in a dictionary; nested dictionaries are not entered (they may hold each other).
void readXrecords(AcDbObjectId dictionaryId) {
    AcDbObjectPointer<AcDbDictionary> dictionary(dictionaryId, AcDb::kForRead);
    if (!dictionary) return;
    for (auto it = dictionary->newIterator(); !it->done(); it->next()) {
        AcDbObjectPointer<AcDbXrecord> record(it->objectId(), AcDb::kForRead);
        if (!record) continue;
        resbuf* chain = nullptr;
        record->rbChain(chain);
        acutRelRb(chain);
    }
}

void readEntity(const AcDbEntity& entity) {
    AcDbExtents extents;
    entity.getGeomExtents(extents);
    acutRelRb(entity.xData());
    readXrecords(entity.extensionDictionary());
}

void readDrawing(AcDbDatabase& database) {
    AcDbBlockTable* table = nullptr;
    if (database.getBlockTable(table, AcDb::kForRead) != Acad::eOk) return;
    for (const AcDbObjectId recordId : table->recordIds()) {
        AcDbObjectPointer<AcDbBlockTableRecord> record(recordId, AcDb::kForRead);
        if (!record) continue;
        std::unique_ptr<AcDbBlockTableRecordIterator> it;
        record->newIterator(it);
        for (; !it->done(); it->step()) {
            AcDbEntity* entity = nullptr;
            if (it->getEntity(entity, AcDb::kForRead) != Acad::eOk) continue;
            readEntity(*entity);
            entity->close();
        }
    }
    table->close();
    readXrecords(database.namedObjectsDictionaryId());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QxDwgDatabase drawing(fuzz::WriteScratchFile("drawing.dwg", data, size), 1);
    if (drawing) readDrawing(*drawing.get());
    return 0;
}
