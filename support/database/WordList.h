// The description words of Data\word.mdb, refreshed from the common-resource folder on each call.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// Copies the common-resource folder's Data\word.mdb over the local install folder's one (unless the two are
// the same path ignoring case; a failed copy is passed over), then reads the column WORD of the first table
// whose name holds `key` after at least one other character. An empty list when there is no such file or
// table; a missing file prints its message once.
QX_API void GetWordList(const CString& key, CStringArray& words);
