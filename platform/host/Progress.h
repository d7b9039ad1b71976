// Progress of long walks: one line per step on standard error, shown only when standard error is a
// terminal, so that scripts, logs and the JSON of the tools see nothing of it.
#pragma once

#include "support/CString.h"

QX_API void ShowProgressLine(const CString& text);
