// CBomOfDwg: the BOM rows of one drawing, as its path and nine parallel columns.
#pragma once

#include "support/CArray.h"

class QX_API CBomOfDwg {
public:
    virtual ~CBomOfDwg() = default;

    CString Path;
    CStringArray Names;
    CStringArray Types;
    CStringArray Counts;
    // The material code, or the type text where the drawing gives none.
    CStringArray Codes;
    CStringArray Prices;
    // "Symb1" or "Symb2".
    CStringArray Kinds;
    CStringArray Labels;
    CStringArray Notes;
    // An empty string per row.
    CStringArray Extras;
};

// A list owns its elements.
using CBomOfDwgArray = CArray<CBomOfDwg*, CBomOfDwg*>;

// Deletes every element and leaves the list empty.
QX_API void QxFreeBomOfDwgs(CBomOfDwgArray& list);
