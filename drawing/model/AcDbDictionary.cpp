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

Acad::ErrorStatus AcDbDictionary::getAt(const CString& name, AcDbObjectId& id) const {
    id = AcDbObjectId::kNull;
    const auto it = m_byUpperName.find(upper(name));
    if (it == m_byUpperName.end()) return Acad::eKeyNotFound;
    id = m_entries[it->second].id;
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
    return m_byUpperName.count(upper(name)) != 0;
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
    const auto it = m_byUpperName.find(upper(name));
    if (it != m_byUpperName.end()) {
        m_entries[it->second].id = id;
        return Acad::eOk;
    }
    addEntry(name, id);
    return Acad::eOk;
}

void AcDbDictionary::addEntry(const CString& name, AcDbObjectId id) {
    m_byUpperName.emplace(upper(name), m_entries.size());
    m_entries.push_back({name, id});
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
