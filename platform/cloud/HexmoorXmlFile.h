// How the cloud client saves a Hexmoor.xml: the document's text as UTF-8 without a byte-order mark, which
// any XML reader takes since the declaration names no encoding.
#pragma once

#include "support/CString.h"

// Writes through a temporary file renamed over the target. False for an empty path, a path whose folder
// does not exist, or a failed write.
QX_API bool SaveHexmoorXml(const CString& path, const CString& text);
