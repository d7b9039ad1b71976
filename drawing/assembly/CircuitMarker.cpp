// Finding and adding the marker of a circuit block.
#include "drawing/assembly/CircuitMarker.h"

#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/walk/EntityWalk.h"

#include <memory>

bool QxBlockHasCircuitMarker(AcDbObjectId block) {
    bool found = false;
    QxWalkBlockRecord(block, [&](AcDbEntity& entity) {
        AcGePoint3d centre;
        found = QxIsCircuitMarker(&entity, centre);
        return found ? WalkStep::Stop : WalkStep::Continue;
    });
    return found;
}

bool QxAddCircuitMarker(AcDbObjectId block) {
    AcDbObjectPointer<AcDbBlockTableRecord> record(block, AcDb::kForWrite);
    if (!record) return false;
    const AcGePoint3d origin = record->origin();
    auto marker = std::make_unique<AcDbPolyline>();
    marker->addVertexAt(0, AcGePoint2d{origin.x - 0.5, origin.y}, 1.0, 2.0, 2.0);
    marker->addVertexAt(1, AcGePoint2d{origin.x + 0.5, origin.y}, 1.0, 2.0, 2.0);
    marker->setClosed(true);
    marker->setLayer(u"0");
    marker->setColorIndex(1);
    marker->setVisibility(AcDb::kInvisible, true);
    ResItems tag;
    tag.push_back(ResItem::text(1000, QX_CIRCUIT1_ADDEDMARKER));
    marker->setXDataItems(QX_CIRCUIT1_ADDEDMARKER, std::move(tag));
    AcDbObjectId id;
    return record->appendAcDbEntity(id, std::move(marker)) == Acad::eOk;
}
