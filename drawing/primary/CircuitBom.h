// The BOM of one circuit block: the pair list of its BOM record (on the reference, else on the marker in
// its definition), else the first-class symbols nested in the definition, else the reference's own.
#pragma once

#include "drawing/model/AcDb.h"
#include "support/CArray.h"

// Fills the columns for one reference; `prices` comes in empty and leaves with the length of `types`.
// True when the reference is a circuit block proper that should carry a marker: not a title block, and
// not a symbol (kinds 2, 3, 5, 6).
QX_API bool QxGetCircuitBom(AcDbBlockReference* reference, CStringArray& types, CStringArray& codes,
                            CStringArray& names, CStringArray& counts, CStringArray& prices,
                            CStringArray& newAddInfo);

// A closed two-vertex polyline with a bulge near 1 and a chord near 1: a circle of diameter 1, where a
// circuit block keeps its BOM record. `centre` is the middle of the chord, z 0.
QX_API bool QxIsCircuitMarker(AcDbEntity* entity, AcGePoint3d& centre);

// Appends the parts of a pair list "key, value, key, value, ...". A last key without a value adds nothing:
// records are written in pairs, and half a pair says nothing about a part.
QX_API void QxParseCircuitBomPairs(const CStringArray& pairs, CStringArray& types, CStringArray& codes,
                                   CStringArray& names, CStringArray& counts, CStringArray& prices);
