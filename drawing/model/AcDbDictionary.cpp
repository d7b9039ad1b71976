// Dictionaries and xrecords.
#include "drawing/model/AcDbDictionary.h"

#include "drawing/model/AcDbDatabase.h"
#include "drawing/model/AcDbOpen.h"

namespace {

CString upper(CString name) {
    name.MakeUpper();
    return name;
}

} // namespace

long long AcDbDictionary::indexOf(const CString& name) const {
    if (m_byUpperName) {
        const auto it = m_byUpperName->find(upper(name));
        return it == m_byUpperName->end() ? -1 : static_cast<long long>(it->second);
    }
    for (size_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].name.EqualsNoCase(name)) return static_cast<long long>(i);
    return -1;
}

Acad::ErrorStatus AcDbDictionary::getAt(const CString& name, AcDbObjectId& id) const {
    id = AcDbObjectId::kNull;
    const long long index = indexOf(name);
    if (index < 0) return Acad::eKeyNotFound;
    id = m_entries[static_cast<size_t>(index)].id;
    return id.isNull() ? Acad::eNullObjectId : Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const CString& name, AcDbObject*& object, AcDb::OpenMode mode) const {
    object = nullptr;
    AcDbObjectId id;
    const Acad::ErrorStatus status = getAt(name, id);
    if (status != Acad::eOk) return status;
    return acdbOpenAcDbObject(object, id, mode);
}

bool AcDbDictionary::has(const CString& name) const {
    return indexOf(name) >= 0;
}

bool AcDbDictionary::has(AcDbObjectId id) const {
    if (id.isNull()) return false;
    for (const Entry& entry : m_entries)
        if (entry.id == id) return true;
    return false;
}

std::unique_ptr<AcDbDictionaryIterator> AcDbDictionary::newIterator() const {
    return std::make_unique<AcDbDictionaryIterator>(*this);
}

Acad::ErrorStatus AcDbDictionary::setAt(const CString& name, std::unique_ptr<AcDbObject> object, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (!object) return Acad::eInvalidInput;
    if (database() == nullptr) return Acad::eNoDatabase;
    object->setOwnerId(objectId());
    const Acad::ErrorStatus status = database()->addAcDbObject(id, std::move(object));
    if (status != Acad::eOk) return status;
    const long long index = indexOf(name);
    if (index >= 0) {
        m_entries[static_cast<size_t>(index)].id = id;
        return Acad::eOk;
    }
    addEntry(name, id);
    return Acad::eOk;
}

void AcDbDictionary::addEntry(const CString& name, AcDbObjectId id) {
    m_entries.push_back({namePool().intern(name.view()), id});
    if (m_byUpperName) {
        m_byUpperName->emplace(upper(name), m_entries.size() - 1);
        return;
    }
    if (m_entries.size() < kIndexedFrom) return;
    m_byUpperName = std::make_unique<std::unordered_map<CString, size_t>>();
    // The first entry of a name wins.
    for (size_t i = 0; i < m_entries.size(); ++i) m_byUpperName->emplace(upper(m_entries[i].name), i);
}

const char16_t* AcDbDictionaryIterator::name() const {
    return done() ? u"" : m_dictionary.entries()[m_index].name.c_str();
}

AcDbObjectId AcDbDictionaryIterator::objectId() const {
    return done() ? AcDbObjectId::kNull : m_dictionary.entries()[m_index].id;
}

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object, AcDb::OpenMode mode) const {
    object = nullptr;
    if (done()) return Acad::eInvalidInput;
    return acdbOpenAcDbObject(object, objectId(), mode);
}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf*& chain, AcDbDatabase*) const {
    chain = ToRbChain(m_items);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf* chain, AcDbDatabase*) {
    m_items = FromRbChain(chain);
    return Acad::eOk;
}
