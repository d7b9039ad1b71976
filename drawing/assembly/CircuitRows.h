// The row table of one circuit: the parts of all its block references, counted once per physical part.
#pragma once

#include "support/CArray.h"

// For each row of a circuit's table, the keys of the references that counted into it.
using CircuitRowKeys = CArray<CStringArray>;

// Adds the BOM columns of one block reference to the circuit's table (four columns and the key lists).
// Rows without type and code are passed over. A row equal to a table row in type, code and name (ignoring
// case) adds its count to it, unless its key, not empty, is already in that row's key list: references of
// one master symbol are drawings of one part and count once. False, adding nothing, when the table's or the
// input's columns differ in length.
QX_API bool QxAddCircuitRows(CircuitRowKeys& keys, CStringArray& types, CStringArray& codes, CStringArray& names,
                             CStringArray& counts, CString key, const CStringArray& inTypes,
                             const CStringArray& inCodes, const CStringArray& inNames, const CStringArray& inCounts);
