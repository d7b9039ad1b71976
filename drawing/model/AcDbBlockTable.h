// The block table and its records: model space, paper space and block definitions, each an ordered list
// of entities in drawing order.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <memory>
#include <unordered_map>
#include <vector>

class AcDbBlockTableRecordIterator;

class QX_API AcDbBlockTableRecord : public AcDbObject {
public:
    static AcDbBlockTableRecord* cast(AcDbObject* object) { return dynamic_cast<AcDbBlockTableRecord*>(object); }
    static const AcDbBlockTableRecord* cast(const AcDbObject* object) { return dynamic_cast<const AcDbBlockTableRecord*>(object); }
    std::string_view dxfName() const override { return "BLOCK_RECORD"; }

    Acad::ErrorStatus getName(CString& name) const { name = m_name; return Acad::eOk; }
    const CString& name() const { return m_name; }
    void setName(const CString& name) { m_name = name; }
    // The base point of the definition.
    AcGePoint3d origin() const { return m_origin; }
    void setOrigin(const AcGePoint3d& origin);
    bool isAnonymous() const { return m_name.StartsWith(u"*U") || m_name.StartsWith(u"*u"); }

    // Every entity in drawing order, erased ones included.
    const std::vector<AcDbObjectId>& entityIds() const { return m_entities; }
    Acad::ErrorStatus newIterator(std::unique_ptr<AcDbBlockTableRecordIterator>& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Takes the entity into the database and appends it; the record must be open for write.
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, std::unique_ptr<AcDbEntity> entity);
    // For readers that fill a drawing: appends an entity that is already in the database.
    void appendExistingEntity(AcDbObjectId id);

    // The extents of the definition's geometry in its own coordinates, nested inserts included. Kept
    // until the drawing changes, so that each definition of a deep nesting is measured once, not once
    // for every path that reaches it. Empty when the walk cannot enter the definition (a cycle, or
    // nesting deeper than ExtentsWalk::kMaxDepth).
    AcDbExtents definitionExtents(ExtentsWalk& walk) const;
    // Adds the geometry of every entity, taken through `toWorld`; guarded against cycles and depth.
    void addEntityExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const;

private:
    CString m_name;
    AcGePoint3d m_origin;
    std::vector<AcDbObjectId> m_entities;
    mutable AcDbExtents m_cachedExtents;
    mutable std::uint64_t m_cachedGeneration = 0;  // the database's geometry generation; 0 for none
};

// Walks a record's entities in drawing order. Entities appended during the walk are reached too.
class QX_API AcDbBlockTableRecordIterator {
public:
    AcDbBlockTableRecordIterator(const AcDbBlockTableRecord& record, bool skipDeleted);

    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) const;

private:
    void skipErased(bool forward);

    const AcDbBlockTableRecord& m_record;
    long long m_index = 0;
};

class QX_API AcDbBlockTable : public AcDbObject {
public:
    static AcDbBlockTable* cast(AcDbObject* object) { return dynamic_cast<AcDbBlockTable*>(object); }
    std::string_view dxfName() const override { return "TABLE"; }

    // Names compare ignoring case.
    Acad::ErrorStatus getAt(const CString& name, AcDbObjectId& id) const;
    Acad::ErrorStatus getAt(const CString& name, AcDbBlockTableRecord*& record, AcDb::OpenMode mode) const;
    bool has(const CString& name) const;
    // Takes the record into the database; eDuplicateKey when the name is taken.
    Acad::ErrorStatus add(AcDbObjectId& id, std::unique_ptr<AcDbBlockTableRecord> record, AcDbHandle handle = {});
    // For readers that fill a drawing: a record already in the database.
    Acad::ErrorStatus addExisting(AcDbObjectId id);
    // Records in the order they were added.
    const std::vector<AcDbObjectId>& recordIds() const { return m_records; }

private:
    std::vector<AcDbObjectId> m_records;
    std::unordered_map<CString, AcDbObjectId> m_byUpperName;
};

// Names of the two layouts every drawing has.
inline constexpr char16_t ACDB_MODEL_SPACE[] = u"*Model_Space";
inline constexpr char16_t ACDB_PAPER_SPACE[] = u"*Paper_Space";
