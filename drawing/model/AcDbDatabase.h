// AcDbDatabase: one drawing. It owns every object; ids and handles find them in constant time.
#pragma once

#include "drawing/model/AcDbArena.h"
#include "drawing/model/AcDbBlockTable.h"
#include "drawing/model/AcDbDictionary.h"
#include "drawing/model/AcDbNamePool.h"
#include "drawing/model/AcDbObjectTable.h"

#include <memory>
#include <vector>

class QX_API AcDbDatabase {
public:
    // With `buildDefaultDrawing` the database starts with a block table holding model space and paper
    // space, and an empty named-object dictionary; without it, it holds nothing until a drawing is read.
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase();
    AcDbDatabase(const AcDbDatabase&) = delete;
    AcDbDatabase& operator=(const AcDbDatabase&) = delete;

    // Reads a drawing, replacing what the database held. "X.dwg" is read from that file when it holds
    // DXF, else from "X.dxf" beside it. Defined by the DXF reader (drawing/dxf/ReadDwgFile.cpp).
    Acad::ErrorStatus readDwgFile(const CString& fileName, int shareMode = 64, bool allowCPConversion = false,
                                  const char16_t* password = nullptr);
    // The path given to the read that filled the database.
    const CString& originalFileName() const { return m_fileName; }
    void setOriginalFileName(const CString& fileName) { m_fileName = fileName; }

    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) { return getBlockTable(table, mode); }
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode);
    AcDbObjectId blockTableId() const { return m_blockTable; }
    AcDbObjectId namedObjectsDictionaryId() const { return m_namedObjects; }
    AcDbObjectId modelSpaceId() const;
    AcDbObjectId paperSpaceId() const;

    // The object of a handle; eUnknownHandle with a null id when the database has none.
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound, const AcDbHandle& handle, int xRefId = 0) const;
    // Takes an object in. A null handle, or one already taken, gets the next free handle.
    Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, std::unique_ptr<AcDbObject> object, AcDbHandle handle = {});
    // For readers that fill a drawing: takes the object in under exactly this handle and gives true, or
    // leaves it with the caller and gives false when the handle is null or taken.
    bool addAcDbObjectWithHandle(std::unique_ptr<AcDbObject>& object, AcDbHandle handle);
    // Room for this many objects, so that a large drawing is read without rehashing.
    void reserveObjects(size_t count);
    // The next handle a new object gets.
    AcDbHandle handseed() const { return m_handseed; }
    void setHandseed(AcDbHandle seed);
    size_t numObjects() const { return m_objects.size(); }

    // For readers that fill a drawing: the block table and named-object dictionary in use.
    void setBlockTableId(AcDbObjectId id) { m_blockTable = id; }
    void setNamedObjectsDictionaryId(AcDbObjectId id) { m_namedObjects = id; }
    // Drops every object: the state of a database made without a default drawing.
    void clear();

    // Where a reader that fills the database takes its objects' memory from (AcDbArenaScope).
    AcDbArena& arena() { return *m_arena; }

    // Names that objects share: xdata applications, layers, dictionary entries.
    AcDbNamePool& names() { return m_names; }

    // Counts changes that may move geometry (entities appended or erased, objects opened for write);
    // cached extents of block definitions are valid for one generation only.
    std::uint64_t geometryGeneration() const { return m_geometryGeneration; }
    void noteGeometryChange() { ++m_geometryGeneration; }

private:
    void buildDefaultDrawing();

    std::unique_ptr<AcDbArena> m_arena = std::make_unique<AcDbArena>();  // before the objects that live in it
    AcDbNamePool m_names;  // before the objects, which refer to its names
    AcDbObjectTable m_objects;
    AcDbHandle m_handseed{1};
    std::uint64_t m_geometryGeneration = 1;
    AcDbObjectId m_blockTable;
    AcDbObjectId m_namedObjects;
    CString m_fileName;
};
