// The block references tied to a master symbol: several drawings of one physical part.
#pragma once

#include "drawing/model/AcDb.h"
#include "support/CArray.h"

inline constexpr char16_t QX_SYMB1_TYPEHANDLE[] = u"QX_SYMB1_TYPEHANDLE";

// The handles that the master's xdata `key` lists (1005 items) and that link back to the master under the
// same key, ignoring case, in the master's order. Empty when the master does not open or has no such xdata.
QX_API void QxGetLinkedSymbols(AcDbDatabase* database, CString master, CString key, CStringArray& handles);
