// DxfBuilder: fills a database from the records of a DXF file, section by section, and resolves the
// handles and names that refer from one object to another once every record is in.
#pragma once

#include "drawing/dxf/DxfContext.h"
#include "drawing/model/AcDb.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DxfBuilder {
public:
    // The database is emptied first.
    explicit DxfBuilder(AcDbDatabase& database);
    ~DxfBuilder();

    void add(const DxfRecord& record);
    // Links objects, gives handles to those that had none and makes what every drawing has.
    void finish();

private:
    struct PendingEntry {
        AcDbDictionary* dictionary;
        const CString* name;  // in the database's pool
        AcDbHandle target;
    };
    struct PendingInsert {
        AcDbBlockReference* insert;
        CString blockName;
    };
    struct PendingLink {
        AcDbObject* object;
        AcDbHandle target;
    };

    void readHeader(const DxfRecord& record);
    void readTableEntry(const DxfRecord& record);
    void readBlocksRecord(const DxfRecord& record);
    void readEntity(const DxfRecord& record, bool inBlocks);
    void readObject(const DxfRecord& record);
    void readDictionary(const DxfRecord& record, const DxfCommonGroups& common, DxfValues& values);
    void readXrecord(const DxfRecord& record, const DxfCommonGroups& common, DxfValues& values);
    void closePolyline();

    // Takes an object in under its handle, or keeps it until finish() when it has none or a taken one.
    AcDbObjectId adopt(std::unique_ptr<AcDbObject> object, AcDbHandle handle);
    // Owner, extension dictionary and xdata of a record.
    void attachCommon(AcDbObject& object, const DxfCommonGroups& common, XDataList xdata,
                      bool isEntity = false);
    AcDbBlockTableRecord* recordNamed(const CString& name, AcDbHandle handle);
    AcDbBlockTableRecord* layoutForEntity(const AcDbEntity& entity, AcDbHandle owner);
    void append(AcDbBlockTableRecord* record, AcDbEntity* entity);
    void resolveInsert(AcDbBlockReference& insert, const CString& blockName);

    AcDbDatabase& m_database;
    DxfTextDecoder m_decoder;
    DxfNames m_names;
    DxfXDataScratch m_xdataScratch;
    AcDbBlockTable* m_blockTable = nullptr;
    AcDbBlockTableRecord* m_currentBlock = nullptr;
    AcDbBlockTableRecord* m_modelSpace = nullptr;
    AcDbBlockTableRecord* m_paperSpace = nullptr;
    AcDbHandle m_lastOwner;
    AcDbBlockTableRecord* m_lastOwnerPaperSpace = nullptr;
    AcDbPolyline* m_openPolyline = nullptr;
    AcDbSpaceVertices* m_openSpaceVertices = nullptr;
    // The host converts old-style 2D polylines to light-weight ones only in drawings of R13 or older; a
    // file without $ACADVER is R12.
    bool m_convertsOldPolylines = true;
    bool m_namedObjectsSeen = false;
    std::vector<std::unique_ptr<AcDbObject>> m_withoutHandle;
    std::vector<PendingEntry> m_entries;
    std::vector<PendingInsert> m_inserts;
    std::vector<PendingLink> m_owners;
    std::vector<PendingLink> m_extensionDictionaries;
};
