// Title blocks: the block reference in model space whose cell table says where the drawing number and
// drawing name are written, and the two texts found there.
#pragma once

#include "drawing/model/AcDb.h"

inline constexpr char16_t HORSIZE_OF_DRAWING[] = u"HORSIZE_OF_DRAWING";
inline constexpr char16_t VERSIZE_OF_DRAWING[] = u"VERSIZE_OF_DRAWING";
inline constexpr char16_t HORNUM_OF_TABLE[] = u"HORNUM_OF_TABLE";
inline constexpr char16_t VERNUM_OF_TABLE[] = u"VERNUM_OF_TABLE";
inline constexpr char16_t HORBEGIN_OF_TABLE[] = u"HORBEGIN_OF_TABLE";
inline constexpr char16_t CORVANE_TITLE[] = u"CORVANE_TITLE";

// Number and name of the drawing from the first accepted title block. A title block whose name holds
// "接线" (wiring) but not "一次" (primary) is passed over; at the end of model space the result is false
// and the outputs hold what the last title block gave.
QX_API bool QxGetDwgTitle(AcDbDatabase* database, CString& number, CString& name);

// Reads one block reference; false when it is no title block, has no table or the table has no cell.
QX_API bool QxReadTitleBlock(AcDbDatabase* database, AcDbBlockReference* reference, CString& number, CString& name);

// The strict test used on circuit blocks: xdata under all of "X1", HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING,
// HORNUM_OF_TABLE and VERNUM_OF_TABLE.
QX_API bool QxIsTitleBlock(AcDbEntity* entity);
