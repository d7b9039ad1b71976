// Building the cabinet groups of a primary diagram from its circuits, and the whole scan of a project
// folder's primary diagram into the extraction's state.
#pragma once

#include "drawing/assembly/ReferSourceRecords.h"
#include "drawing/primary/Cir1Attrubute.h"

// Splits a circuit number "cabinet(drawer)" at its first "(" and first ")": false, for a circuit without a
// drawer, when "(" stands first or is missing, or when no ")" stands behind the first character. The drawer
// is the text behind "(" with ")" trimmed from both ends.
QX_API bool QxSplitCircuitNo(const CString& no, CString& cabinet, CString& drawer);

// For each circuit in order: counts the parts of its block references in the drawing at `path`, and adds
// a drawer to the first group of its cabinet's name (making one where there is none) or, for a circuit
// without a drawer, always a new group; then reads the secondary drawing and adds the marker to the block
// definition of a circuit block that has none.
QX_API void QxBuildReferGroups(CCir1AttrubuteArray& circuits, CReferSourceGroupArray& groups, CString path);
