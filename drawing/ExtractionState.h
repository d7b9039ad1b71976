// The state of the drawing extraction that lives from one scan of a primary diagram to the next: the
// cabinet groups, the circuits they were made from, and the flag of a failed cabinet equality check.
// The module, the extraction and the inspection tool share it; the module empties the arrays at unload.
#pragma once

#include "drawing/assembly/ReferSourceRecords.h"
#include "drawing/primary/Cir1Attrubute.h"

// Filled by QxScanPrimaryDiagram; owns its groups.
extern QX_API CReferSourceGroupArray g_arrReferGroups;
// The circuits of the last scan; owns its records.
extern QX_API CCir1AttrubuteArray g_arrCircuits;
// Raised by QxCheckCabinetsEqual after it showed its message; cleared by the commands that submit or
// compare BOMs.
extern QX_API bool g_bBomCheckFailed;
