// The marker of a circuit block: a closed two-vertex polyline, a circle of diameter 1 at the block's
// origin, where a circuit block keeps its BOM record.
#pragma once

#include "drawing/model/AcDb.h"

// True when the block definition holds an entity that QxIsCircuitMarker accepts.
QX_API bool QxBlockHasCircuitMarker(AcDbObjectId block);
// Appends the marker to the definition: layer "0", colour 1, invisible, vertices half a unit left and right
// of the origin with bulge 1 and widths 2, and xdata QX_CIRCUIT1_ADDEDMARKER, so that readers pass it over
// while it holds no record. False when the definition does not open for write.
QX_API bool QxAddCircuitMarker(AcDbObjectId block);
