// The values that CHistoryDataOprt holds before LocalData\HistoryData.txt is read.
#pragma once

#include "support/CArray.h"

inline constexpr int QX_HISTORY_DEFAULT_COUNT = 286;

// The defaults in index order.
QX_API void GetHistoryDefaults(CStringArray& values);
