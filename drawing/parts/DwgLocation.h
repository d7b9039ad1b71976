// The drawing's location: an xrecord of the drawing's own dictionary, a caption holding "位置" followed by
// the value.
#pragma once

#include "drawing/model/AcDb.h"

inline constexpr char16_t QX_DWG_DICITIONARY[] = u"QX_DWG_DICITIONARY";
inline constexpr char16_t QX_LOCATION_XRECORD[] = u"QX_LOCATION_XRECORD";

// The item behind the first item that holds "位置" once its blanks are removed. Empty when any link of
// the chain is missing, and when the caption is the record's last item.
QX_API void QxGetDwgLocation(AcDbDatabase* database, CString& location);
