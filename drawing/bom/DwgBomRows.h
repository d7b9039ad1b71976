// The BOM table of a secondary drawing as nine parallel columns, one entry per row in drawing order.
#pragma once

#include "support/CArray.h"

// Appends one entry to each column per row: label anchors give "Symb2" rows, type anchors "Symb1" rows.
// False only when the drawing cannot be opened; a drawing without BOM cells gives no rows and true.
QX_API bool QxGetDwgBomRows(CString path, CStringArray& names, CStringArray& types, CStringArray& counts,
                            CStringArray& codes, CStringArray& prices, CStringArray& kinds, CStringArray& labels,
                            CStringArray& notes, CStringArray& extras);
