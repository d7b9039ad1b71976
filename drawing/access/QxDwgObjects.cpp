// Reading objects of a drawing.
#include "drawing/access/QxDwgObjects.h"

AcDbMText* QxAsMText(AcDbEntity* entity) {
    return AcDbMText::cast(entity);
}

AcDbText* QxAsText(AcDbEntity* entity) {
    return AcDbText::cast(entity);
}

AcDbBlockReference* QxAsBlockReference(AcDbEntity* entity) {
    return AcDbBlockReference::cast(entity);
}

bool QxHandleToId(AcDbDatabase* database, CString handle, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (database == nullptr) return false;
    AcDbHandle parsed;
    if (!AcDbHandle::parse(handle.view(), parsed)) return false;
    return database->getAcDbObjectId(id, false, parsed) == Acad::eOk;
}

AcDbMText* QxOpenMText(AcDbObjectId id, AcDb::OpenMode mode) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, mode) != Acad::eOk) return nullptr;
    AcDbMText* mtext = AcDbMText::cast(entity);
    if (mtext == nullptr) entity->close();
    return mtext;
}

CString QxGetBlockName(AcDbBlockReference* reference) {
    if (reference == nullptr) return {};
    AcDbObjectPointer<AcDbBlockTableRecord> record(reference->blockTableRecord(), AcDb::kForRead);
    if (!record) return {};
    CString name;
    record->getName(name);
    return name;
}

bool QxGetXRecordChain(AcDbObject* object, CString name, resbuf*& chain) {
    chain = nullptr;
    if (object == nullptr) return false;
    AcDbObjectPointer<AcDbDictionary> dictionary(object->extensionDictionary(), AcDb::kForRead);
    if (!dictionary) return false;
    for (auto it = dictionary->newIterator(); !it->done(); it->next()) {
        AcDbObject* entry = nullptr;
        if (it->getObject(entry, AcDb::kForRead) != Acad::eOk) continue;
        CString entryName(it->name());
        entryName.Trim();
        const auto* xrecord = AcDbXrecord::cast(entry);
        if (entryName.EqualsNoCase(name) && xrecord != nullptr) {
            xrecord->rbChain(chain);
            entry->close();
            return true;
        }
        entry->close();
    }
    return false;
}

bool QxHasXRecord(AcDbObject* object, CString name) {
    if (object == nullptr) return false;
    AcDbObjectPointer<AcDbDictionary> dictionary(object->extensionDictionary(), AcDb::kForRead);
    return dictionary && dictionary->has(name);
}

void QxChainToStrings(const resbuf* chain, CStringArray& strings) {
    for (const resbuf* item = chain; item != nullptr; item = item->rbnext)
        if (item->restype == 1) strings.Add(CString(item->resval.rstring ? item->resval.rstring : u""));
}
