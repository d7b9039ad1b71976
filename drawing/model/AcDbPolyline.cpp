// Light-weight polylines and the extents of their arc segments.
#include "drawing/model/AcDbPolyline.h"

#include <cmath>

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned index, AcGePoint2d& point) const {
    if (index >= m_vertices.size()) return Acad::eInvalidInput;
    point = m_vertices[index].point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned index, AcGePoint3d& point) const {
    if (index >= m_vertices.size()) return Acad::eInvalidInput;
    const AcGePoint2d p = m_vertices[index].point;
    point = AcGeMatrix3d::planeToWorld(m_normal).transform(AcGePoint3d{p.x, p.y, m_elevation});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned index, double& bulge) const {
    if (index >= m_vertices.size()) return Acad::eInvalidInput;
    bulge = m_vertices[index].bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned index, double& startWidth, double& endWidth) const {
    if (index >= m_vertices.size()) return Acad::eInvalidInput;
    startWidth = m_vertices[index].startWidth;
    endWidth = m_vertices[index].endWidth;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned index, const AcGePoint2d& point, double bulge, double startWidth,
                                            double endWidth) {
    if (index > m_vertices.size()) return Acad::eInvalidInput;
    const double start = startWidth < 0.0 ? m_constantWidth : startWidth;
    const double end = endWidth < 0.0 ? m_constantWidth : endWidth;
    m_vertices.insert(m_vertices.begin() + index, Vertex{point, bulge, start, end});
    return Acad::eOk;
}

void AcDbPolyline::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    const AcGeMatrix3d m = toWorld * AcGeMatrix3d::planeToWorld(m_normal);
    const size_t count = m_vertices.size();
    for (size_t i = 0; i < count; ++i) {
        const Vertex& a = m_vertices[i];
        extents.addPoint(m.transform(AcGePoint3d{a.point.x, a.point.y, m_elevation}));
        if (a.bulge == 0.0 || !std::isfinite(a.bulge)) continue;
        if (i + 1 == count && !m_closed) continue;
        const AcGePoint2d b = m_vertices[(i + 1) % count].point;
        const double dx = b.x - a.point.x;
        const double dy = b.y - a.point.y;
        const double chord = std::hypot(dx, dy);
        if (chord == 0.0) continue;
        // The arc through both vertices whose included angle is 4 atan(bulge), negative bulges clockwise.
        const double angle = 4.0 * std::atan(a.bulge);
        const double radius = chord / (2.0 * std::sin(std::fabs(angle) / 2.0));
        const double sagittaToCentre = radius * std::cos(angle / 2.0) * (a.bulge > 0 ? 1.0 : -1.0);
        const double mx = (a.point.x + b.x) / 2.0;
        const double my = (a.point.y + b.y) / 2.0;
        const AcGePoint3d centre{mx - dy / chord * sagittaToCentre, my + dx / chord * sagittaToCentre, m_elevation};
        const double startAngle = std::atan2(a.point.y - centre.y, a.point.x - centre.x);
        const double endAngle = std::atan2(b.y - centre.y, b.x - centre.x);
        if (a.bulge > 0) AddArcExtents(m, centre, radius, startAngle, endAngle, extents);
        else AddArcExtents(m, centre, radius, endAngle, startAngle, extents);
    }
}
