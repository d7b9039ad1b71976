// Small calls on the host: document locks, queued commands and 16-bit host variables.
#pragma once

#include "support/CString.h"

// True at once while SDI is set; false without an active document.
QX_API bool QxLockCurDoc();
QX_API bool QxUnlockCurDoc();
// Queues the text in the current document; an empty text sends nothing.
QX_API void QxSendCommand(CString text);
// True when the host gives the variable as a 16-bit integer.
QX_API bool QxGetVarInt(CString name, int& value);
QX_API bool QxSetVarInt(CString name, int value);
