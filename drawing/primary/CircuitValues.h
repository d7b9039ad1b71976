// The stored string forms of a circuit: "prefix＠value『annotation』" for attributes and
// "prefix＠name|||value『annotation』" for row texts ("＠" U+FF20, "『" U+300E, "』" U+300F).
#pragma once

#include "support/CString.h"

// The value rule: drop everything through the first "＠", then cut at "『".
QX_API CString QxCircuitValue(const CString& stored);
// The number rule: the part before the first "＠" is the prefix; the value, cut at "『", becomes
// "value(prefix)" when the prefix is not empty.
QX_API CString QxCircuitNumber(const CString& stored);
// The annotation: behind "『" (after the "＠" step) with every "』" removed; empty without "『".
QX_API CString QxCircuitAnnotation(const CString& stored);

// One row text split into name and value; false when it has no "|||" or its name is empty.
struct QX_API CircuitRow {
    CString name;
    CString value;
    // The annotation of the whole text, or the value when it has none.
    CString annotationOrValue;
};
QX_API bool QxParseCircuitRow(const CString& stored, CircuitRow& row);
