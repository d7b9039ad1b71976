// The drawing database: object store, handles, the block table and the named-object dictionary.
#include "drawing/model/AcDbDatabase.h"

#include "drawing/model/AcDbOpen.h"

AcDbDatabase::AcDbDatabase(bool buildDefault, bool) {
    if (buildDefault) buildDefaultDrawing();
}

AcDbDatabase::~AcDbDatabase() = default;

void AcDbDatabase::clear() {
    m_objects.clear();
    m_arena = std::make_unique<AcDbArena>();
    m_handseed = AcDbHandle(1);
    m_blockTable = {};
    m_namedObjects = {};
    m_names = AcDbNamePool();
}

void AcDbDatabase::buildDefaultDrawing() {
    addAcDbObject(m_blockTable, std::make_unique<AcDbBlockTable>());
    auto* table = AcDbBlockTable::cast(m_blockTable.objectUnchecked());
    for (const char16_t* name : {ACDB_MODEL_SPACE, ACDB_PAPER_SPACE}) {
        auto record = std::make_unique<AcDbBlockTableRecord>();
        record->setName(name);
        AcDbObjectId id;
        table->add(id, std::move(record));
    }
    addAcDbObject(m_namedObjects, std::make_unique<AcDbDictionary>());
}

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
    return acdbOpenObject(table, m_blockTable, mode);
}

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode) {
    return acdbOpenObject(dictionary, m_namedObjects, mode);
}

AcDbObjectId AcDbDatabase::modelSpaceId() const {
    AcDbObjectId id;
    if (const auto* table = AcDbBlockTable::cast(m_blockTable.objectUnchecked())) table->getAt(ACDB_MODEL_SPACE, id);
    return id;
}

AcDbObjectId AcDbDatabase::paperSpaceId() const {
    AcDbObjectId id;
    if (const auto* table = AcDbBlockTable::cast(m_blockTable.objectUnchecked())) table->getAt(ACDB_PAPER_SPACE, id);
    return id;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool, const AcDbHandle& handle, int) const {
    id = AcDbObjectId::kNull;
    if (handle.isNull()) return Acad::eInvalidInput;
    AcDbObject* found = m_objects.find(handle.value());
    if (found == nullptr) return Acad::eUnknownHandle;
    id = AcDbObjectId::fromObject(found);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, std::unique_ptr<AcDbObject> object, AcDbHandle handle) {
    id = AcDbObjectId::kNull;
    if (!object) return Acad::eInvalidInput;
    if (handle.isNull() || m_objects.contains(handle.value())) handle = m_handseed;
    // The seed wraps to 0 after a drawing that used the last handle.
    while (handle.isNull() || m_objects.contains(handle.value())) ++handle;
    object->attachTo(this, handle);
    if (handle >= m_handseed) m_handseed = AcDbHandle(handle.value() + 1);
    id = object->objectId();
    m_objects.insert(object.release());
    return Acad::eOk;
}

bool AcDbDatabase::addAcDbObjectWithHandle(std::unique_ptr<AcDbObject>& object, AcDbHandle handle) {
    if (!object || handle.isNull()) return false;
    object->attachTo(this, handle);
    if (!m_objects.insert(object.get())) {
        object->attachTo(nullptr, {});
        return false;
    }
    object.release();
    if (handle >= m_handseed) m_handseed = AcDbHandle(handle.value() + 1);
    return true;
}

void AcDbDatabase::reserveObjects(size_t count) {
    m_objects.reserve(m_objects.size() + count);
}

void AcDbDatabase::setHandseed(AcDbHandle seed) {
    if (seed > m_handseed) m_handseed = seed;
}
