// The check that two cabinets which one device stands for have the same content.
#pragma once

#include "support/Export.h"

// Compares the groups at these indexes of g_arrReferGroups: the number of parts, each part's type, name
// and count, the drawing and its titles, the number of drawers, then drawer by drawer its parts and its
// drawing. At the first difference it shows its message in a box, raises g_bBomCheckFailed and gives false.
QX_API bool QxCheckCabinetsEqual(int first, int second);
