// The table of named character references that UnescapeText decodes: HTML 4's names and apos.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

#include <string_view>

inline constexpr int QX_ENTITY_BUCKET_COUNT = 130;

// The buckets of the table. A bucket is a run of entries with nothing between them; an entry is the
// name's length as one digit, the code as four decimal digits, and the name in lower case. A name falls
// in the bucket of the sum of its lower-case code units modulo 130; within a bucket the entries stand in
// the ASCII order of the names as HTML spells them, so a capital stands before its small letter.
QX_API const CStringArray& GetEntityBuckets();

// The bucket of a key: the sum of its code units modulo 130.
QX_API int GetEntityBucket(std::u16string_view key);

// The code of the first entry whose name equals the lower-case key, or 0.
QX_API int LookupEntityCode(std::u16string_view key);
