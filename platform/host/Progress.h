// Progress of long walks on standard error, shown only when standard error is a terminal, so that scripts,
// logs and the JSON of the tools see nothing of it. The progress is one line rewritten in place; whatever
// the host shows next clears it first, so it never runs into other output.
#pragma once

#include "support/CString.h"

QX_API void ShowProgressLine(const CString& text);
// Removes the progress line from the screen, if one is shown.
QX_API void ClearProgressLine();
