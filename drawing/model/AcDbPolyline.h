// AcDbPolyline: a light-weight polyline of vertices with bulges, in the plane of its normal.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <memory>
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

// An old-style 2D POLYLINE that the host keeps as it is: it converts such polylines to light-weight ones
// only when it opens a drawing of R13 or older. It has the vertices of a light-weight polyline but is no
// AcDbPolyline, so it is never taken for a circuit marker.
class QX_API AcDb2dPolyline : public AcDbEntity {
public:
    explicit AcDb2dPolyline(std::unique_ptr<AcDbPolyline> shape) : m_shape(std::move(shape)) {}
    static AcDb2dPolyline* cast(AcDbObject* object) { return dynamic_cast<AcDb2dPolyline*>(object); }
    static const AcDb2dPolyline* cast(const AcDbObject* object) { return dynamic_cast<const AcDb2dPolyline*>(object); }
    std::string_view dxfName() const override { return "POLYLINE"; }

    // Its vertices, bulges and widths, for reading and for the reader that fills it.
    AcDbPolyline& shape() { return *m_shape; }
    const AcDbPolyline& shape() const { return *m_shape; }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override {
        m_shape->addExtents(toWorld, walk, extents);
    }

private:
    std::unique_ptr<AcDbPolyline> m_shape;
};
