// The BOM arrays of a device node: the part rows of the device's own drawings, then the cabinet groups of
// the primary diagram that belong to the device, with the check that cabinets which must agree do.
#pragma once

#include "project/ProjectTree.h"

// Replaces `rows` with the part rows of the drawings in the folder of the device file at `prjPath`. A row
// whose count is not "1" and whose name, type and count equal those of the row taken just before it is
// passed over: a part whose labels were merged into one table row shows once per label.
QX_API void QxGetDeviceSecondaryRows(CString prjPath, BomRows& rows);

// Merges the groups of g_arrReferGroups that m_strCirNo names into the node. Several names ("," or "，")
// set m_nCabCount; the first group named is merged and the others must equal it. False when that check
// failed (it has shown its message and raised g_bBomCheckFailed).
QX_API bool QxMergeDeviceBom(HMProjectTree_INFO* node);

// The add rule: the first row of the same name and model, exactly, takes the sum of both counts; without
// one the row is appended as it is.
QX_API void QxAddBomRow(BomRows& rows, const BOM_INFO& row);
