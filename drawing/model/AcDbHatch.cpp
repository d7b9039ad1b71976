// The box of a hatch's boundary.
#include "drawing/model/AcDbHatch.h"

void AcDbHatch::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    const AcGeMatrix3d m = toWorld * AcGeMatrix3d::planeToWorld(m_normal);
    for (const AcGePoint2d& point : m_points) extents.addPoint(m.transform(AcGePoint3d{point.x, point.y, m_elevation}));
    for (const Circle& circle : m_circles)
        AddArcExtents(m, AcGePoint3d{circle.center.x, circle.center.y, m_elevation}, circle.radius, 0.0,
                      2.0 * AcGe::kPi, extents);
}
