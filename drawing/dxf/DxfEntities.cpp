// Readers of entity records.
#include "drawing/dxf/DxfEntities.h"

#include "drawing/model/AcDb3dPolyline.h"
#include "drawing/model/AcDbBlockReference.h"
#include "drawing/model/AcDbCurves.h"
#include "drawing/model/AcDbText.h"

#include <algorithm>
#include <cmath>

namespace {

using Tags = std::vector<DxfTag>;

double degrees(double value) {
    return value * AcGe::kPi / 180.0;
}

AcGePoint3d toWorld(const AcGeVector3d& normal, const AcGePoint3d& ocsPoint) {
    return AcGeMatrix3d::planeToWorld(normal).transform(ocsPoint);
}

void readEntityGroups(const DxfTag& tag, AcDbEntity& entity, DxfValues& values) {
    switch (tag.code) {
    case 62: entity.setColorIndex(static_cast<int>(values.integer(tag))); break;
    case 60: entity.setVisibility(values.integer(tag) != 0 ? AcDb::kInvisible : AcDb::kVisible); break;
    case 67: entity.setPaperSpaceFlag(values.integer(tag) != 0); break;
    default: break;
    }
}

template <typename Entity>
std::unique_ptr<AcDbEntity> readTextLike(const Tags& tags, size_t end, DxfValues& values) {
    auto text = std::make_unique<Entity>();
    AcGePoint3d position;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        // A multi-line attribute definition embeds an MTEXT with groups of its own: not the definition's.
        if (tag.code == 101) break;
        if (TakePointGroup(tag, 10, position, values) || TakeVectorGroup(tag, 210, normal, values)) continue;
        switch (tag.code) {
        case 1: text->setTextString(values.text(tag)); break;
        case 40: text->setHeight(values.real(tag)); break;
        case 50: text->setRotation(degrees(values.real(tag))); break;
        default:
            if constexpr (std::is_same_v<Entity, AcDbAttributeDefinition>) {
                if (tag.code == 2) text->setTag(values.text(tag));
                if (tag.code == 3) text->setPrompt(values.text(tag));
            }
            break;
        }
    }
    text->setPosition(toWorld(normal, position));
    return text;
}

std::unique_ptr<AcDbEntity> readMText(const Tags& tags, size_t end, DxfValues& values) {
    auto mtext = std::make_unique<AcDbMText>();
    AcGePoint3d location;
    AcGeVector3d direction;
    bool hasDirection = false;
    // The chunks are joined before decoding: an escape or a character may straddle two of them.
    std::string contents;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (tag.code == 101) break;  // an embedded object follows, with groups of its own
        if (TakePointGroup(tag, 10, location, values)) continue;
        switch (tag.code) {
        case 1:
        case 3: contents.append(tag.value); break;
        case 40: mtext->setTextHeight(values.real(tag)); break;
        case 41: mtext->setWidth(values.real(tag)); break;
        case 50: mtext->setRotation(values.real(tag)); break;  // radians, unlike TEXT
        case 71: mtext->setAttachment(static_cast<int>(values.integer(tag))); break;
        case 11: direction.x = values.real(tag); hasDirection = true; break;
        case 21: direction.y = values.real(tag); break;
        default: break;
        }
    }
    // A direction, when given, decides the rotation.
    if (hasDirection) mtext->setRotation(std::atan2(direction.y, direction.x));
    mtext->setContents(values.decoder().decode(contents));
    mtext->setLocation(location);
    return mtext;
}

std::unique_ptr<AcDbEntity> readInsert(const Tags& tags, size_t end, DxfValues& values, CString& blockName) {
    auto insert = std::make_unique<AcDbBlockReference>();
    AcGePoint3d position;
    AcGeVector3d scale{1.0, 1.0, 1.0};
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakePointGroup(tag, 10, position, values) || TakeVectorGroup(tag, 210, normal, values)) continue;
        switch (tag.code) {
        case 2: blockName = values.text(tag); break;
        case 41: scale.x = values.real(tag); break;
        case 42: scale.y = values.real(tag); break;
        case 43: scale.z = values.real(tag); break;
        case 50: insert->setRotation(degrees(values.real(tag))); break;
        default: break;
        }
    }
    insert->setPosition(toWorld(normal, position));
    insert->setScaleFactors(scale);
    insert->setNormal(normal);
    return insert;
}

std::unique_ptr<AcDbEntity> readLwPolyline(const Tags& tags, size_t end, DxfValues& values) {
    auto polyline = std::make_unique<AcDbPolyline>();
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    struct Vertex { AcGePoint2d point; double bulge = 0.0, start = -1.0, end = -1.0; };
    std::vector<Vertex> vertices;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakeVectorGroup(tag, 210, normal, values)) continue;
        switch (tag.code) {
        case 10: vertices.push_back({{values.real(tag), 0.0}}); break;
        case 20: if (!vertices.empty()) vertices.back().point.y = values.real(tag); break;
        case 40: if (!vertices.empty()) vertices.back().start = values.real(tag); break;
        case 41: if (!vertices.empty()) vertices.back().end = values.real(tag); break;
        case 42: if (!vertices.empty()) vertices.back().bulge = values.real(tag); break;
        case 38: polyline->setElevation(values.real(tag)); break;
        case 43: polyline->setConstantWidth(values.real(tag)); break;
        case 70: polyline->setClosed((values.integer(tag) & 1) != 0); break;
        default: break;
        }
    }
    for (const Vertex& v : vertices) polyline->addVertexAt(polyline->numVerts(), v.point, v.bulge, v.start, v.end);
    polyline->setNormal(normal);
    return polyline;
}

// An old-style POLYLINE; its vertices follow as records of their own. A 3D polyline or a mesh keeps its
// vertices in space; anything else is a light-weight polyline in its plane.
std::unique_ptr<AcDbEntity> readPolyline(const Tags& tags, size_t end, DxfValues& values) {
    long long flags = 0;
    long long meshM = 0;
    long long meshN = 0;
    double elevation = 0.0;
    double constantWidth = 0.0;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakeVectorGroup(tag, 210, normal, values)) continue;
        switch (tag.code) {
        case 30: elevation = values.real(tag); break;
        case 40: constantWidth = values.real(tag); break;
        case 70: flags = values.integer(tag); break;
        case 71: meshM = values.integer(tag); break;
        case 72: meshN = values.integer(tag); break;
        default: break;
        }
    }
    const bool closed = (flags & 1) != 0;
    if ((flags & 8) != 0) {
        auto polyline = std::make_unique<AcDb3dPolyline>();
        polyline->setClosed(closed);
        return polyline;
    }
    if ((flags & 16) != 0) {
        auto mesh = std::make_unique<AcDbPolygonMesh>();
        mesh->setSize(static_cast<int>(std::clamp(meshM, 0LL, 32767LL)), static_cast<int>(std::clamp(meshN, 0LL, 32767LL)));
        return mesh;
    }
    if ((flags & 64) != 0) return std::make_unique<AcDbPolyFaceMesh>();
    auto polyline = std::make_unique<AcDbPolyline>();
    polyline->setElevation(elevation);
    polyline->setConstantWidth(constantWidth);
    polyline->setClosed(closed);
    polyline->setNormal(normal);
    return polyline;
}

std::unique_ptr<AcDbEntity> readLine(const Tags& tags, size_t end, DxfValues& values) {
    AcGePoint3d start;
    AcGePoint3d finish;
    for (size_t i = 0; i < end; ++i) {
        if (!TakePointGroup(tags[i], 10, start, values)) TakePointGroup(tags[i], 11, finish, values);
    }
    return std::make_unique<AcDbLine>(start, finish);
}

template <typename Entity>
std::unique_ptr<AcDbEntity> readCircleLike(const Tags& tags, size_t end, DxfValues& values) {
    auto circle = std::make_unique<Entity>();
    AcGePoint3d center;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakePointGroup(tag, 10, center, values) || TakeVectorGroup(tag, 210, normal, values)) continue;
        if (tag.code == 40) circle->setRadius(values.real(tag));
        if constexpr (std::is_same_v<Entity, AcDbArc>) {
            if (tag.code == 50) circle->setStartAngle(degrees(values.real(tag)));
            if (tag.code == 51) circle->setEndAngle(degrees(values.real(tag)));
        }
    }
    circle->setCenter(center);
    circle->setNormal(normal);
    return circle;
}

std::unique_ptr<AcDbEntity> readSolid(const Tags& tags, size_t end, DxfValues& values) {
    auto solid = std::make_unique<AcDbSolid>();
    AcGePoint3d corners[4];
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    for (size_t i = 0; i < end; ++i) {
        if (TakeVectorGroup(tags[i], 210, normal, values)) continue;
        for (int k = 0; k < 4; ++k)
            if (TakePointGroup(tags[i], 10 + k, corners[k], values)) break;
    }
    for (int k = 0; k < 4; ++k) solid->setPointAt(k, corners[k]);
    solid->setNormal(normal);
    return solid;
}

std::unique_ptr<AcDbEntity> readByKind(const DxfRecord& record, size_t end, DxfValues& values, CString& blockName) {
    const std::string_view type = record.type;
    const Tags& tags = record.tags;
    if (type == "TEXT") return readTextLike<AcDbText>(tags, end, values);
    if (type == "ATTDEF") return readTextLike<AcDbAttributeDefinition>(tags, end, values);
    if (type == "MTEXT") return readMText(tags, end, values);
    if (type == "INSERT") return readInsert(tags, end, values, blockName);
    if (type == "LWPOLYLINE") return readLwPolyline(tags, end, values);
    if (type == "POLYLINE") return readPolyline(tags, end, values);
    if (type == "LINE") return readLine(tags, end, values);
    if (type == "ARC") return readCircleLike<AcDbArc>(tags, end, values);
    if (type == "CIRCLE") return readCircleLike<AcDbCircle>(tags, end, values);
    if (type == "SOLID") return readSolid(tags, end, values);
    if (type == "ELLIPSE") return ReadDxfEllipse(tags, end, values);
    if (type == "SPLINE") return ReadDxfSpline(tags, end, values);
    if (type == "HATCH") return ReadDxfHatch(tags, end, values);
    return std::make_unique<AcDbUnknownEntity>(type);
}

} // namespace

DxfEntityRead ReadDxfEntity(const DxfRecord& record, size_t bodyEnd, DxfValues& values) {
    DxfEntityRead read;
    auto entity = readByKind(record, bodyEnd, values, read.blockName);
    for (size_t i = 0; i < bodyEnd; ++i) {
        readEntityGroups(record.tags[i], *entity, values);
        if (record.tags[i].code == 8) read.layer = record.tags[i].value;
    }
    if (!values.bad()) read.entity = std::move(entity);
    return read;
}

bool AddDxfVertex(AcDbPolyline& polyline, const DxfRecord& record, DxfValues& values) {
    AcGePoint3d point;
    double bulge = 0.0;
    double startWidth = -1.0;
    double endWidth = -1.0;
    long long flags = 0;
    for (const DxfTag& tag : record.tags) {
        if (tag.code == 1001) break;
        if (TakePointGroup(tag, 10, point, values)) continue;
        switch (tag.code) {
        case 42: bulge = values.real(tag); break;
        case 40: startWidth = values.real(tag); break;
        case 41: endWidth = values.real(tag); break;
        case 70: flags = values.integer(tag); break;
        default: break;
        }
    }
    if (values.bad()) return false;
    // A face record of a polyface mesh has no place of its own.
    if ((flags & 128) != 0 && (flags & 64) == 0) return true;
    polyline.addVertexAt(polyline.numVerts(), {point.x, point.y}, bulge, startWidth, endWidth);
    return true;
}

bool AddDxfSpaceVertex(AcDbSpaceVertices& owner, const DxfRecord& record, DxfValues& values) {
    AcGePoint3d point;
    long long flags = 0;
    AcDbPolyFaceMesh::Face face{};
    for (const DxfTag& tag : record.tags) {
        if (tag.code == 1001) break;
        if (TakePointGroup(tag, 10, point, values)) continue;
        if (tag.code == 70) flags = values.integer(tag);
        if (tag.code >= 71 && tag.code <= 74)
            face[static_cast<size_t>(tag.code - 71)] = static_cast<int>(std::clamp(values.integer(tag), -32768LL, 32767LL));
    }
    if (values.bad()) return false;
    const bool faceRecord = (flags & 128) != 0 && (flags & 64) == 0;
    if (faceRecord) {
        if (auto* mesh = AcDbPolyFaceMesh::cast(&owner)) mesh->appendFace(face);
        return true;
    }
    // A spline's frame control points are not on the curve.
    if ((flags & 16) != 0) return true;
    owner.appendVertex(point);
    return true;
}
