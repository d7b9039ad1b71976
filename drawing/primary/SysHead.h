// The head table of a primary diagram: texts that give the primary rated voltage, the busbar and the
// secondary rated voltage of the switchboard.
#pragma once

#include "drawing/model/AcDb.h"

// For each of "一次额定电压", "母线规格" and "二次额定电压": whether a head text names it, the value behind
// the label (blanks and ":" removed) and the text's id; the last text of an item wins. False only for a
// null database. The ids run primary, secondary, busbar, unlike flags and texts.
QX_API bool QxReadSysHead(AcDbDatabase* database, bool& found1, bool& foundBus, bool& found2, CString& text1,
                          CString& textBus, CString& text2, AcDbObjectId& id1, AcDbObjectId& id2,
                          AcDbObjectId& idBus);
