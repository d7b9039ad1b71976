// The application's own text files: read by DecodeTextFile's rule (a byte-order mark says UTF-8, else the
// legacy code page unless UTF-8 is valid and more plausible); written in the legacy code page with CR LF
// line ends, as the Windows application writes them.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// Splits decoded text into lines; a line's CR LF or LF ending is never part of it, and a final line end
// does not make an extra empty line.
QX_API void SplitTextLines(const CString& text, CStringArray& lines);

// False when the file does not exist or cannot be read.
QX_API bool ReadTextFile(const CString& logicPath, CString& text);
QX_API bool ReadTextLines(const CString& logicPath, CStringArray& lines);

// Writes text in the legacy code page; every "\n" becomes CR LF, as the C run-time's text mode writes it.
QX_API bool WriteLegacyText(const CString& logicPath, const CString& text);
