// Opening objects by id, as the host does, and AcDbObjectPointer, which closes what it opened.
#pragma once

#include "drawing/model/AcDbEntity.h"

// eNullObjectId for a null id, eWasErased for an erased object unless `openErased`.
QX_API Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                            bool openErased = false);
// eNotThatKindOfClass, with a null result, for an object that is no entity.
QX_API Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                            bool openErased = false);

// Opens as the class T (or a class derived from it).
template <typename T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false) {
    object = nullptr;
    AcDbObject* opened = nullptr;
    const Acad::ErrorStatus status = acdbOpenAcDbObject(opened, id, mode, openErased);
    if (status != Acad::eOk) return status;
    if (opened == nullptr) return Acad::eNullObjectId;
    object = T::cast(opened);
    if (object != nullptr) return Acad::eOk;
    opened->close();
    return Acad::eNotThatKindOfClass;
}

// Opens an object for the length of a scope and closes it at the end.
template <typename T>
class AcDbObjectPointer {
public:
    AcDbObjectPointer(AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false)
        : m_status(acdbOpenObject(m_object, id, mode, openErased)) {}
    ~AcDbObjectPointer() { if (m_object) m_object->close(); }
    AcDbObjectPointer(const AcDbObjectPointer&) = delete;
    AcDbObjectPointer& operator=(const AcDbObjectPointer&) = delete;

    Acad::ErrorStatus openStatus() const { return m_status; }
    T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T* m_object = nullptr;
    Acad::ErrorStatus m_status;
};
