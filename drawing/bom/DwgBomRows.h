// The BOM table of a secondary drawing as nine parallel columns, one entry per row in drawing order.
#pragma once

#include "drawing/model/AcDbDatabase.h"
#include "support/CArray.h"

// Appends one entry to each column per row: label anchors give "Symb2" rows, type anchors "Symb1" rows.
// False only when the drawing cannot be opened; a drawing without BOM cells gives no rows and true.
QX_API bool QxGetDwgBomRows(CString path, CStringArray& names, CStringArray& types, CStringArray& counts,
                            CStringArray& codes, CStringArray& prices, CStringArray& kinds, CStringArray& labels,
                            CStringArray& notes, CStringArray& extras);

// The same on a database already at hand (a drawing open in a document, or one made in memory).
QX_API void QxGetDatabaseBomRows(AcDbDatabase* database, CStringArray& names, CStringArray& types,
                                 CStringArray& counts, CStringArray& codes, CStringArray& prices, CStringArray& kinds,
                                 CStringArray& labels, CStringArray& notes, CStringArray& extras);
