// Text from files, the centre or the site, made safe to show on a terminal: a control character there
// would move the cursor, retitle the window or ring the bell instead of being read.
#pragma once

#include "support/CString.h"

enum class QxLineBreaks { Escape, Keep };

// Every control character (C0, DEL, C1) becomes its visible \xNN form, e.g. ESC shows as \x1b. With
// QxLineBreaks::Keep a line feed stays a line feed, for output whose own lines are meant.
QX_API CString QxPrintable(const CString& text, QxLineBreaks lineBreaks = QxLineBreaks::Escape);
// Whether the text holds a character that QxPrintable would escape, line feeds included.
QX_API bool QxHasControlCharacter(const CString& text);
