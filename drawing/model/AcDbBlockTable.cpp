// The block table, its records and the walk over a record's entities.
#include "drawing/model/AcDbBlockTable.h"

#include "drawing/model/AcDbDatabase.h"
#include "drawing/model/AcDbOpen.h"

#include <algorithm>

namespace {

CString upper(CString name) {
    name.MakeUpper();
    return name;
}

} // namespace

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(std::unique_ptr<AcDbBlockTableRecordIterator>& iterator,
                                                    bool atBeginning, bool skipDeleted) const {
    iterator = std::make_unique<AcDbBlockTableRecordIterator>(*this, skipDeleted);
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, std::unique_ptr<AcDbEntity> entity) {
    id = AcDbObjectId::kNull;
    if (!entity) return Acad::eInvalidInput;
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (database() == nullptr) return Acad::eNoDatabase;
    entity->setOwnerId(objectId());
    const Acad::ErrorStatus status = database()->addAcDbObject(id, std::move(entity));
    if (status != Acad::eOk) return status;
    appendExistingEntity(id);
    return Acad::eOk;
}

void AcDbBlockTableRecord::appendExistingEntity(AcDbObjectId id) {
    m_entities.push_back(id);
    if (database() != nullptr) database()->noteGeometryChange();
}

void AcDbBlockTableRecord::setOrigin(const AcGePoint3d& origin) {
    m_origin = origin;
    if (database() != nullptr) database()->noteGeometryChange();
}

void AcDbBlockTableRecord::addEntityExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const {
    auto& path = walk.blocksOnPath;
    if (static_cast<int>(path.size()) >= ExtentsWalk::kMaxDepth) return;
    if (std::find(path.begin(), path.end(), this) != path.end()) return;
    path.push_back(this);
    for (const AcDbObjectId& id : m_entities) {
        const auto* entity = AcDbEntity::cast(id.objectUnchecked());
        if (entity != nullptr && !entity->isErased()) entity->addExtents(toWorld, walk, extents);
    }
    path.pop_back();
}

AcDbExtents AcDbBlockTableRecord::definitionExtents(ExtentsWalk& walk) const {
    const AcDbDatabase* db = database();
    if (db != nullptr && m_cachedGeneration == db->geometryGeneration()) return m_cachedExtents;
    AcDbExtents own;
    addEntityExtents(AcGeMatrix3d(), walk, own);
    if (db != nullptr) {
        m_cachedExtents = own;
        m_cachedGeneration = db->geometryGeneration();
    }
    return own;
}

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(const AcDbBlockTableRecord& record, bool skipDeleted)
    : m_record(record) {
    start(true, skipDeleted);
}

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    m_index = atBeginning ? 0 : static_cast<long long>(m_record.entityIds().size()) - 1;
    if (skipDeleted) skipErased(atBeginning);
}

bool AcDbBlockTableRecordIterator::done() const {
    return m_index < 0 || m_index >= static_cast<long long>(m_record.entityIds().size());
}

void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_index += forward ? 1 : -1;
    if (skipDeleted) skipErased(forward);
}

void AcDbBlockTableRecordIterator::skipErased(bool forward) {
    while (!done() && m_record.entityIds()[static_cast<size_t>(m_index)].isErased()) m_index += forward ? 1 : -1;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    if (done()) return Acad::eInvalidInput;
    id = m_record.entityIds()[static_cast<size_t>(m_index)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode, bool openErased) const {
    entity = nullptr;
    AcDbObjectId id;
    if (getEntityId(id) != Acad::eOk) return Acad::eInvalidInput;
    return acdbOpenAcDbEntity(entity, id, mode, openErased);
}

Acad::ErrorStatus AcDbBlockTable::getAt(const CString& name, AcDbObjectId& id) const {
    const auto it = m_byUpperName.find(upper(name));
    if (it == m_byUpperName.end() || it->second.isErased()) {
        id = AcDbObjectId::kNull;
        return Acad::eKeyNotFound;
    }
    id = it->second;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTable::getAt(const CString& name, AcDbBlockTableRecord*& record, AcDb::OpenMode mode) const {
    record = nullptr;
    AcDbObjectId id;
    const Acad::ErrorStatus status = getAt(name, id);
    if (status != Acad::eOk) return status;
    return acdbOpenObject(record, id, mode);
}

bool AcDbBlockTable::has(const CString& name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTable::add(AcDbObjectId& id, std::unique_ptr<AcDbBlockTableRecord> record, AcDbHandle handle) {
    id = AcDbObjectId::kNull;
    if (!record) return Acad::eInvalidInput;
    if (database() == nullptr) return Acad::eNoDatabase;
    if (has(record->name())) return Acad::eDuplicateKey;
    record->setOwnerId(objectId());
    const Acad::ErrorStatus status = database()->addAcDbObject(id, std::move(record), handle);
    if (status != Acad::eOk) return status;
    return addExisting(id);
}

Acad::ErrorStatus AcDbBlockTable::addExisting(AcDbObjectId id) {
    const auto* record = AcDbBlockTableRecord::cast(id.objectUnchecked());
    if (record == nullptr) return Acad::eNotThatKindOfClass;
    const CString key = upper(record->name());
    if (m_byUpperName.count(key) != 0) return Acad::eDuplicateKey;
    m_byUpperName.emplace(key, id);
    m_records.push_back(id);
    return Acad::eOk;
}
