// Reading the committed DXF fixtures in tests, and small look-ups over what was read.
#pragma once

#include "drawing/model/DrawingBuilder.h"
#include "support/FileSystem.h"

#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

inline CString FixturePath(const std::string& name) {
    return QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/dxf/" + name);
}

inline std::unique_ptr<AcDbDatabase> ReadFixture(const std::string& name, Acad::ErrorStatus* status = nullptr) {
    auto db = std::make_unique<AcDbDatabase>(false, true);
    const Acad::ErrorStatus result = db->readDwgFile(FixturePath(name));
    if (status) *status = result;
    return db;
}

inline std::vector<AcDbEntity*> EntitiesOf(AcDbObjectId recordId) {
    std::vector<AcDbEntity*> entities;
    AcDbObjectPointer<AcDbBlockTableRecord> record(recordId, AcDb::kForRead);
    if (!record) return entities;
    std::unique_ptr<AcDbBlockTableRecordIterator> it;
    record->newIterator(it);
    for (; !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity, AcDb::kForRead) == Acad::eOk) entities.push_back(entity);
    }
    return entities;
}

// The entities of the block definition of that name, or none.
inline std::vector<AcDbEntity*> BlockEntities(AcDbDatabase* database, const CString& name) {
    AcDbBlockTable* table = nullptr;
    AcDbObjectId id;
    if (database->getBlockTable(table, AcDb::kForRead) != Acad::eOk) return {};
    table->getAt(name, id);
    table->close();
    return EntitiesOf(id);
}

// The first 1000 (or other) item of an application's xdata, as text.
inline CString FirstXDataText(const AcDbObject* object, const char16_t* app, short code = 1000) {
    const XDataApp* found = object ? object->findXData(app) : nullptr;
    if (!found) return u"<none>";
    for (const ResItem& item : found->items)
        if (item.code() == code) return item.asText();
    return u"<no item>";
}

inline ResItems XrecordItems(AcDbObjectId dictionaryId, const CString& entry) {
    AcDbObjectPointer<AcDbDictionary> dictionary(dictionaryId, AcDb::kForRead);
    if (!dictionary) return {};
    AcDbObjectId id;
    if (dictionary->getAt(entry, id) != Acad::eOk) return {};
    AcDbObjectPointer<AcDbXrecord> record(id, AcDb::kForRead);
    return record ? record->items() : ResItems{};
}

// A coordinate rounded to six decimals, without the sign of a negative zero, for texts that compare.
inline double Rounded(double value) { return std::round(value * 1e6) / 1e6 + 0.0; }

// A polyline's vertices as "x,y bBulge", separated by ";", then "closed" or "open".
inline std::string PolylineText(const AcDbPolyline& line) {
    std::ostringstream text;
    text.precision(12);
    for (unsigned i = 0; i < line.numVerts(); ++i) {
        AcGePoint2d p;
        double bulge = 0;
        line.getPointAt(i, p);
        line.getBulgeAt(i, bulge);
        text << (i ? ";" : "") << Rounded(p.x) << "," << Rounded(p.y) << " b" << Rounded(bulge);
    }
    text << (line.isClosed() ? " closed" : " open");
    return text.str();
}

// The vertices of a curve in space as "x,y,z", separated by ";".
inline std::string VerticesText(const AcDbSpaceVertices& curve) {
    std::ostringstream text;
    for (unsigned i = 0; i < curve.numVerts(); ++i) {
        AcGePoint3d p;
        curve.getPointAt(i, p);
        text << (i ? ";" : "") << Rounded(p.x) << "," << Rounded(p.y) << "," << Rounded(p.z);
    }
    return text.str();
}

// Extents as "x0,y0 x1,y1", or "none".
inline std::string ExtentsText(const AcDbExtents& e) {
    if (!e.isValid()) return "none";
    std::ostringstream text;
    text.precision(12);
    text << Rounded(e.minPoint().x) << "," << Rounded(e.minPoint().y) << " " << Rounded(e.maxPoint().x) << ","
         << Rounded(e.maxPoint().y);
    return text.str();
}

inline std::string ExtentsText(const AcDbEntity* entity) {
    AcDbExtents e;
    return entity && entity->getGeomExtents(e) == Acad::eOk ? ExtentsText(e) : "none";
}
