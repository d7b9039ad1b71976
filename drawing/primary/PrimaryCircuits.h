// The circuits of a primary diagram: one CCir1Attrubute per distinct circuit, with the handles of all
// block references that show it.
#pragma once

#include "drawing/primary/Cir1Attrubute.h"

// Appends the circuits of the working database, which the caller has set to the drawing at `path`;
// `path` and `flag` go into each record's DwgPaths and DwgFlags. A block reference with no number but a
// QX_Circuit1_Path gets a record of its own with empty strings.
QX_API void QxGetPrimaryCircuits(CString path, int flag, CCir1AttrubuteArray& circuits);
