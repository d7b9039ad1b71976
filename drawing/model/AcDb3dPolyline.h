// POLYLINE entities whose vertices are points in space: 3D polylines, polygon meshes and polyface meshes.
// They keep every coordinate; none of them is a light-weight polyline.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <array>
#include <vector>

// What the three kinds share: vertices in world coordinates, in order.
class QX_API AcDbSpaceVertices : public AcDbEntity {
public:
    std::string_view dxfName() const override { return "POLYLINE"; }

    unsigned numVerts() const { return static_cast<unsigned>(m_vertices.size()); }
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint3d& point) const;
    void appendVertex(const AcGePoint3d& point) { m_vertices.push_back(point); }

    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    std::vector<AcGePoint3d> m_vertices;
};

class QX_API AcDb3dPolyline : public AcDbSpaceVertices {
public:
    static AcDb3dPolyline* cast(AcDbObject* object) { return dynamic_cast<AcDb3dPolyline*>(object); }
    static const AcDb3dPolyline* cast(const AcDbObject* object) { return dynamic_cast<const AcDb3dPolyline*>(object); }

    bool isClosed() const { return m_closed; }
    void setClosed(bool closed) { m_closed = closed; }

private:
    bool m_closed = false;
};

// A grid of M by N vertices, row by row.
class QX_API AcDbPolygonMesh : public AcDbSpaceVertices {
public:
    static AcDbPolygonMesh* cast(AcDbObject* object) { return dynamic_cast<AcDbPolygonMesh*>(object); }
    static const AcDbPolygonMesh* cast(const AcDbObject* object) { return dynamic_cast<const AcDbPolygonMesh*>(object); }

    int mSize() const { return m_mSize; }
    int nSize() const { return m_nSize; }
    void setSize(int m, int n) { m_mSize = m; m_nSize = n; }

private:
    int m_mSize = 0;
    int m_nSize = 0;
};

// Vertices and faces that name up to four of them (from 1; a negative index hides that edge; 0 is none).
class QX_API AcDbPolyFaceMesh : public AcDbSpaceVertices {
public:
    using Face = std::array<int, 4>;
    static AcDbPolyFaceMesh* cast(AcDbObject* object) { return dynamic_cast<AcDbPolyFaceMesh*>(object); }
    static const AcDbPolyFaceMesh* cast(const AcDbObject* object) { return dynamic_cast<const AcDbPolyFaceMesh*>(object); }

    unsigned numFaces() const { return static_cast<unsigned>(m_faces.size()); }
    const Face& faceAt(unsigned index) const { return m_faces.at(index); }
    void appendFace(const Face& face) { m_faces.push_back(face); }

private:
    std::vector<Face> m_faces;
};
