// Small operations over text that several subsystems share.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// k separators give k + 1 parts; an empty separator gives the text whole. Always true.
QX_API bool SplitString(const CString& text, const CString& separator, CStringArray& parts);
// Not empty, and every character a decimal digit.
QX_API bool IsDigitString(const CString& text);
// Each seven-character escape "\U+221A" becomes the root sign itself.
QX_API void ReplaceRootSign(const CString& text, CString& result);
