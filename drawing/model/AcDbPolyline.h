// AcDbPolyline: a light-weight polyline of vertices with bulges, in the plane of its normal.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <vector>

class QX_API AcDbPolyline : public AcDbEntity {
public:
    static AcDbPolyline* cast(AcDbObject* object) { return dynamic_cast<AcDbPolyline*>(object); }
    static const AcDbPolyline* cast(const AcDbObject* object) { return dynamic_cast<const AcDbPolyline*>(object); }
    std::string_view dxfName() const override { return "LWPOLYLINE"; }

    unsigned numVerts() const { return static_cast<unsigned>(m_vertices.size()); }
    bool isClosed() const { return m_closed; }
    void setClosed(bool closed) { m_closed = closed; }
    // A vertex in the polyline's own plane.
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint2d& point) const;
    // A vertex in world coordinates.
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint3d& point) const;
    // Bulge: the tangent of a quarter of the arc's angle to the next vertex; 0 for a straight segment.
    Acad::ErrorStatus getBulgeAt(unsigned index, double& bulge) const;
    Acad::ErrorStatus getWidthsAt(unsigned index, double& startWidth, double& endWidth) const;
    // Inserts before `index` (numVerts() appends). Widths below 0 take the constant width.
    Acad::ErrorStatus addVertexAt(unsigned index, const AcGePoint2d& point, double bulge = 0.0, double startWidth = -1.0,
                                  double endWidth = -1.0);

    double elevation() const { return m_elevation; }
    void setElevation(double elevation) { m_elevation = elevation; }
    AcGeVector3d normal() const { return m_normal; }
    void setNormal(const AcGeVector3d& normal) { m_normal = normal; }
    double constantWidth() const { return m_constantWidth; }
    void setConstantWidth(double width) { m_constantWidth = width; }

    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    struct Vertex {
        AcGePoint2d point;
        double bulge;
        double startWidth;
        double endWidth;
    };

    std::vector<Vertex> m_vertices;
    bool m_closed = false;
    double m_elevation = 0.0;
    double m_constantWidth = 0.0;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
};
