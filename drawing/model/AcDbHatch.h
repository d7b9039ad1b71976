// AcDbHatch as far as its box goes: the points of its boundary paths (polyline vertices, line ends,
// spline control points) and the circles that hold its arc and ellipse edges, in the plane of its normal
// at its elevation. The pattern and the seed points are not kept.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <vector>

class QX_API AcDbHatch : public AcDbEntity {
public:
    static AcDbHatch* cast(AcDbObject* object) { return dynamic_cast<AcDbHatch*>(object); }
    std::string_view dxfName() const override { return "HATCH"; }

    void setNormal(const AcGeVector3d& normal) { m_normal = normal; }
    void setElevation(double elevation) { m_elevation = elevation; }
    void appendBoundaryPoint(const AcGePoint2d& point) { m_points.push_back(point); }
    // An arc or ellipse edge, by the circle around it.
    void appendBoundaryCircle(const AcGePoint2d& center, double radius) { m_circles.push_back({center, radius}); }
    bool hasBoundary() const { return !m_points.empty() || !m_circles.empty(); }

    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    struct Circle {
        AcGePoint2d center;
        double radius;
    };

    std::vector<AcGePoint2d> m_points;
    std::vector<Circle> m_circles;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_elevation = 0.0;
};
