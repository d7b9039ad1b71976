// Text entities.
#include "drawing/model/AcDbText.h"

void AcDbText::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    extents.addPoint(toWorld.transform(m_position));
}

void AcDbMText::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    extents.addPoint(toWorld.transform(m_location));
}
