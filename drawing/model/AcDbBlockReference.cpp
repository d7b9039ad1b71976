// Block references and the extents they take from their definitions.
#include "drawing/model/AcDbBlockReference.h"

#include "drawing/model/AcDbBlockTable.h"

#include <algorithm>

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
    auto& path = walk.blocksOnPath;
    if (static_cast<int>(path.size()) >= ExtentsWalk::kMaxDepth) return;
    if (std::find(path.begin(), path.end(), block) != path.end()) return;
    path.push_back(block);
    const AcGeMatrix3d m = toWorld * blockTransform();
    for (const AcDbObjectId& id : block->entityIds()) {
        const auto* entity = AcDbEntity::cast(id.objectUnchecked());
        if (entity != nullptr && !entity->isErased()) entity->addExtents(m, walk, extents);
    }
    path.pop_back();
}
