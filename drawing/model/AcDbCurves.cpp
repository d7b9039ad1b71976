// Extents of the simple geometry.
#include "drawing/model/AcDbCurves.h"

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
