// Block references and the extents they take from their definitions.
#include "drawing/model/AcDbBlockReference.h"

#include "drawing/model/AcDbBlockTable.h"

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    AcGePoint3d origin;
    if (const auto* block = AcDbBlockTableRecord::cast(m_block.objectUnchecked())) origin = block->origin();
    const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(m_normal);
    // The position is kept in world coordinates; the rotation and scale act in the insert's own plane.
    const AcGeMatrix3d local = AcGeMatrix3d::rotationAboutZ(m_rotation) *
                               AcGeMatrix3d::scaling(m_scale.x, m_scale.y, m_scale.z) *
                               AcGeMatrix3d::translation(AcGePoint3d::kOrigin - origin);
    return AcGeMatrix3d::translation(m_position - AcGePoint3d::kOrigin) * ocs * local;
}

void AcDbBlockReference::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const {
    const auto* block = AcDbBlockTableRecord::cast(m_block.objectUnchecked());
    if (block == nullptr || block->isErased()) return;
    const AcGeMatrix3d m = toWorld * blockTransform();
    // The reference being measured takes its definition's geometry exactly; references nested in it take
    // the cached box of their definitions, which keeps deep nestings linear instead of exponential.
    if (walk.blocksOnPath.empty()) return block->addEntityExtents(m, walk, extents);
    const AcDbExtents own = block->definitionExtents(walk);
    if (!own.isValid()) return;
    const AcGePoint3d& lo = own.minPoint();
    const AcGePoint3d& hi = own.maxPoint();
    for (int corner = 0; corner < 8; ++corner) {
        const AcGePoint3d p{(corner & 1) ? hi.x : lo.x, (corner & 2) ? hi.y : lo.y, (corner & 4) ? hi.z : lo.z};
        extents.addPoint(m.transform(p));
    }
}
