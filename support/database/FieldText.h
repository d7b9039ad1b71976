// Values made text: by the kind a caller asks for, and in the general form a comparison uses.
#pragma once

#include "support/database/DatabaseEngine.h"

// The text of a value read as `kind`: "%d" for integer and long-text kinds, "%.2f" for doubles, "1" or "0"
// for booleans, the text as stored for kind 129. False for kinds that have no text form.
QX_API bool FieldTextOfKind(const DbValue& value, int kind, CString& text);
// Integers in decimal, reals in their shortest exact form, text as it is, null as empty.
QX_API CString FieldText(const DbValue& value);
