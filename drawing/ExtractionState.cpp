// The state of the drawing extraction.
#include "drawing/ExtractionState.h"

CReferSourceGroupArray g_arrReferGroups;
CCir1AttrubuteArray g_arrCircuits;
bool g_bBomCheckFailed = false;
