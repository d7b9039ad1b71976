// Numbers in text, read and written without regard to the locale ("." is always the decimal point).
#pragma once

#include "support/CString.h"

// As _wtoi: leading blanks, an optional sign, then digits; 0 when there are none. Saturates on overflow.
QX_API int QxToInt(const CString& text);
// As _wtof: leading blanks, sign, digits, ".", digits, exponent; 0.0 when no number begins the text.
QX_API double QxToDouble(const CString& text);
