// The scan of a project folder's primary diagram: its circuits and cabinet groups become the extraction's
// state (g_arrCircuits, g_arrReferGroups).
#pragma once

#include "support/CString.h"

// Nothing changes unless the folder holds exactly one "*.dwg". Otherwise both arrays are emptied, the
// drawing is opened in the editor if no document holds it, and it is read as the working database (in its
// own document, made current, where another document holds it); the working database and the current
// document are restored on every way out.
QX_API void QxScanPrimaryDiagram(CString folder);
