// AcDbDictionary (entries by name, ignoring case, in the order they were set) and AcDbXrecord (a chain of
// items kept in a dictionary).
#pragma once

#include "drawing/model/AcDbObject.h"

#include <memory>
#include <unordered_map>
#include <vector>

class AcDbDictionaryIterator;

class QX_API AcDbDictionary : public AcDbObject {
public:
    static AcDbDictionary* cast(AcDbObject* object) { return dynamic_cast<AcDbDictionary*>(object); }
    static const AcDbDictionary* cast(const AcDbObject* object) { return dynamic_cast<const AcDbDictionary*>(object); }
    std::string_view dxfName() const override { return "DICTIONARY"; }

    // The name is shared by the database's objects (see namePool()).
    struct Entry {
        const CString& name;
        AcDbObjectId id;
    };

    // Look-ups ignore case and take the name exactly otherwise: blanks around a name count.
    Acad::ErrorStatus getAt(const CString& name, AcDbObjectId& id) const;
    Acad::ErrorStatus getAt(const CString& name, AcDbObject*& object, AcDb::OpenMode mode) const;
    bool has(const CString& name) const;
    bool has(AcDbObjectId id) const;
    unsigned numEntries() const { return static_cast<unsigned>(m_entries.size()); }
    const std::vector<Entry>& entries() const { return m_entries; }
    std::unique_ptr<AcDbDictionaryIterator> newIterator() const;

    // Takes the object into the database under the name, owned by this dictionary; an entry of that name
    // is replaced.
    Acad::ErrorStatus setAt(const CString& name, std::unique_ptr<AcDbObject> object, AcDbObjectId& id);
    // For readers that fill a drawing: an entry whose object is already in the database, or null when the
    // drawing names an object it does not hold. The first entry of a name wins a look-up.
    void addEntry(const CString& name, AcDbObjectId id);

private:
    // The first entry of the name, ignoring case; -1 for none.
    long long indexOf(const CString& name) const;

    // Most dictionaries hold a few entries and are searched in order; larger ones get an index by
    // upper-case name.
    static constexpr size_t kIndexedFrom = 16;
    std::vector<Entry> m_entries;
    std::unique_ptr<std::unordered_map<CString, size_t>> m_byUpperName;
};

// Walks a dictionary's entries in order.
class QX_API AcDbDictionaryIterator {
public:
    explicit AcDbDictionaryIterator(const AcDbDictionary& dictionary) : m_dictionary(dictionary) {}

    bool done() const { return m_index >= m_dictionary.entries().size(); }
    bool next() { if (!done()) ++m_index; return !done(); }
    const char16_t* name() const;
    AcDbObjectId objectId() const;
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode) const;

private:
    const AcDbDictionary& m_dictionary;
    size_t m_index = 0;
};

class QX_API AcDbXrecord : public AcDbObject {
public:
    static AcDbXrecord* cast(AcDbObject* object) { return dynamic_cast<AcDbXrecord*>(object); }
    static const AcDbXrecord* cast(const AcDbObject* object) { return dynamic_cast<const AcDbXrecord*>(object); }
    std::string_view dxfName() const override { return "XRECORD"; }

    // A new chain of the items, the caller's to free with acutRelRb; null for an empty record.
    Acad::ErrorStatus rbChain(resbuf*& chain, AcDbDatabase* database = nullptr) const;
    Acad::ErrorStatus setFromRbChain(const resbuf* chain, AcDbDatabase* database = nullptr);
    const ResItems& items() const { return m_items; }
    void setItems(ResItems items) { m_items = std::move(items); }

private:
    ResItems m_items;
};
