// Walking the entities of a block table record.
#include "drawing/walk/EntityWalk.h"

bool QxWalkBlockRecord(AcDbObjectId record, const EntityVisitor& visit) {
    AcDbObjectPointer<AcDbBlockTableRecord> opened(record, AcDb::kForRead);
    if (!opened) return false;
    std::unique_ptr<AcDbBlockTableRecordIterator> it;
    if (opened->newIterator(it, true, true) != Acad::eOk || !it) return false;
    for (it->start(true, true); !it->done(); it->step(true, true)) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity, AcDb::kForRead, false) != Acad::eOk || entity == nullptr) continue;
        const WalkStep next = visit(*entity);
        entity->close();
        if (next == WalkStep::Stop) break;
    }
    return true;
}

bool QxWalkModelSpace(AcDbDatabase* database, const EntityVisitor& visit) {
    if (database == nullptr) return false;
    AcDbBlockTable* table = nullptr;
    if (database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk || table == nullptr) return false;
    AcDbObjectId modelSpace;
    const Acad::ErrorStatus found = table->getAt(ACDB_MODEL_SPACE, modelSpace);
    table->close();
    if (found != Acad::eOk) return false;
    return QxWalkBlockRecord(modelSpace, visit);
}
