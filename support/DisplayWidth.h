// How many terminal columns a text takes: a Chinese character takes two, a combining mark none. Tables on
// the terminal are padded and cut by this, never by the count of characters.
#pragma once

#include "support/CString.h"

// Columns of a printable text (escape it first: a control character is counted as one column).
QX_API int QxDisplayWidth(const CString& text);
// The text in exactly `width` columns: padded with blanks on the right, or cut with "…" when it is wider.
// A wide character that would straddle the cut is left out and the gap padded.
QX_API CString QxFitToWidth(const CString& text, int width);
