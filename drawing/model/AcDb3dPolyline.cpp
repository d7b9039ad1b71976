// 3D polylines and meshes.
#include "drawing/model/AcDb3dPolyline.h"

Acad::ErrorStatus AcDbSpaceVertices::getPointAt(unsigned index, AcGePoint3d& point) const {
    if (index >= m_vertices.size()) return Acad::eInvalidInput;
    point = m_vertices[index];
    return Acad::eOk;
}

void AcDbSpaceVertices::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    for (const AcGePoint3d& vertex : m_vertices) extents.addPoint(toWorld.transform(vertex));
}
