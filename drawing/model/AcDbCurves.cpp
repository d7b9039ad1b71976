// Extents of the simple geometry.
#include "drawing/model/AcDbCurves.h"

#include <cmath>

void AcDbLine::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    extents.addPoint(toWorld.transform(m_start));
    extents.addPoint(toWorld.transform(m_end));
}

void AcDbCircle::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    AddArcExtents(toWorld * AcGeMatrix3d::planeToWorld(m_normal), m_center, m_radius, 0.0, 2.0 * AcGe::kPi, extents);
}

void AcDbArc::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    AddArcExtents(toWorld * AcGeMatrix3d::planeToWorld(m_normal), m_center, m_radius, m_start, m_end, extents);
}

void AcDbSolid::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    const AcGeMatrix3d m = toWorld * AcGeMatrix3d::planeToWorld(m_normal);
    for (const AcGePoint3d& corner : m_corners) extents.addPoint(m.transform(corner));
}

void AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& normal, const AcGeVector3d& majorAxis,
                      double radiusRatio, double startParam, double endParam) {
    m_center = center;
    m_normal = normal;
    m_majorAxis = majorAxis;
    m_ratio = radiusRatio;
    m_start = startParam;
    m_end = endParam;
}

void AcDbEllipse::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    const AcGeVector3d n = m_normal.normal();
    const AcGeVector3d minorAxis = m_ratio * n.crossProduct(m_majorAxis);
    // The unit circle taken onto the ellipse: an arc of radius 1 under that map.
    const AcGeMatrix3d frame = AcGeMatrix3d::alignCoordSys(m_center, m_majorAxis, minorAxis, n);
    // Equal parameters make the whole ellipse.
    const double end = m_end == m_start ? m_start + 2.0 * AcGe::kPi : m_end;
    AddArcExtents(toWorld * frame, AcGePoint3d::kOrigin, 1.0, m_start, end, extents);
}

void AcDbSpline::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    for (const AcGePoint3d& point : m_controlPoints.empty() ? m_fitPoints : m_controlPoints)
        extents.addPoint(toWorld.transform(point));
}
