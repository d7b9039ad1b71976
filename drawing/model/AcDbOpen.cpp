// Opening objects by id.
#include "drawing/model/AcDbOpen.h"

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased) {
    object = nullptr;
    AcDbObject* found = id.objectUnchecked();
    if (found == nullptr) return Acad::eNullObjectId;
    if (found->isErased() && !openErased) return Acad::eWasErased;
    found->setOpenedForWrite(mode == AcDb::kForWrite);
    object = found;
    return Acad::eOk;
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode, bool openErased) {
    return acdbOpenObject(entity, id, mode, openErased);
}
