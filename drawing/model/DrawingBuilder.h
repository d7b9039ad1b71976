// DrawingBuilder: makes drawings in memory, for tests and tools. Entities go to model space unless a
// block definition is named; every call returns the new object's id.
#pragma once

#include "drawing/model/AcDb.h"

#include <initializer_list>
#include <memory>
#include <vector>

struct QX_API PolylineVertex {
    double x = 0.0;
    double y = 0.0;
    double bulge = 0.0;
};

class QX_API DrawingBuilder {
public:
    // A new database with the default drawing.
    DrawingBuilder();
    // Builds into a database someone else owns.
    explicit DrawingBuilder(AcDbDatabase& database);

    AcDbDatabase& database() { return *m_database; }
    // Hands the database over; only for a builder that made its own.
    std::unique_ptr<AcDbDatabase> take() { return std::move(m_owned); }

    AcDbObjectId modelSpace() const { return m_database->modelSpaceId(); }
    AcDbObjectId paperSpace() const { return m_database->paperSpaceId(); }

    // A block definition, empty at first; its entities are added by naming it as `into`.
    AcDbObjectId defineBlock(const CString& name, const AcGePoint3d& origin = {});

    AcDbObjectId addText(const CString& text, const AcGePoint3d& position, AcDbObjectId into = {});
    AcDbObjectId addAttributeDefinition(const CString& tag, const CString& value, const AcGePoint3d& position,
                                        AcDbObjectId into = {});
    AcDbObjectId addMText(const CString& contents, const AcGePoint3d& location, AcDbObjectId into = {});
    AcDbObjectId addInsert(AcDbObjectId block, const AcGePoint3d& position, AcDbObjectId into = {},
                           const AcGeVector3d& scale = {1.0, 1.0, 1.0}, double rotation = 0.0);
    AcDbObjectId addInsert(const CString& blockName, const AcGePoint3d& position, AcDbObjectId into = {});
    AcDbObjectId addPolyline(const std::vector<PolylineVertex>& vertices, bool closed, AcDbObjectId into = {});
    AcDbObjectId addLine(const AcGePoint3d& start, const AcGePoint3d& end, AcDbObjectId into = {});
    AcDbObjectId addCircle(const AcGePoint3d& center, double radius, AcDbObjectId into = {});
    AcDbObjectId addArc(const AcGePoint3d& center, double radius, double startRadians, double endRadians,
                        AcDbObjectId into = {});
    // Appends any entity made by the caller.
    AcDbObjectId addEntity(std::unique_ptr<AcDbEntity> entity, AcDbObjectId into = {});

    // Xdata of one application: string items (1000) or any items.
    void setXData(AcDbObjectId object, const CString& application, const ResItems& items);
    void setXDataStrings(AcDbObjectId object, const CString& application, std::initializer_list<CString> values);
    // Links: 1005 items holding the targets' handles.
    void setXDataLinks(AcDbObjectId object, const CString& application, std::initializer_list<AcDbObjectId> targets);

    // The object's extension dictionary, made on first use.
    AcDbObjectId extensionDictionary(AcDbObjectId object);
    // An xrecord under `entryName` in the object's extension dictionary.
    AcDbObjectId addXrecord(AcDbObjectId object, const CString& entryName, const ResItems& items);
    // An xrecord of text items (type 1).
    AcDbObjectId addTextXrecord(AcDbObjectId object, const CString& entryName, std::initializer_list<CString> lines);
    // A dictionary under `name` in `parent` (the named-object dictionary when null), made on first use.
    AcDbObjectId namedDictionary(const CString& name, AcDbObjectId parent = {});
    // An xrecord under `entryName` in a dictionary.
    AcDbObjectId addXrecordTo(AcDbObjectId dictionary, const CString& entryName, const ResItems& items);

    void erase(AcDbObjectId object);

    static ResItems TextItems(short code, std::initializer_list<CString> values);

private:
    AcDbBlockTableRecord* target(AcDbObjectId into) const;

    std::unique_ptr<AcDbDatabase> m_owned;
    AcDbDatabase* m_database;
};
