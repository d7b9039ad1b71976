// The kind lists of Data\: terminal kinds, wire kinds and circuit kinds, as parallel columns.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// One entry a line; index i of every column belongs to the same line.
struct QX_API CKindColumns {
    CStringArray m_arrName;
    CStringArray m_arrSymbol;  // circuit kinds: the value behind ":"
    CStringArray m_arrWidth;   // "%.2f"; empty for a wire kind of the short form and for circuit kinds
    CStringArray m_arrRest;    // the text behind the second ","

    int GetSize() const { return m_arrName.GetSize(); }
    void RemoveAll();
};

// Each reader gives the default list when the file is absent, unreadable or holds no entry, and says
// whether the entries came from the file.

// Data\DZBDZLXFH.txt; a file whose first line has no "," nor "，" is of the old form and is not used.
QX_API bool ReadTerminalKinds(CKindColumns& kinds);
// Data\DZBDXLXFH.txt; lines of the short form "name:symbol" and of the terminal form may be mixed.
QX_API bool ReadWireKinds(CKindColumns& kinds);
// Data\DZBHUILUFH.txt; "name:value", the value may hold one ":" of its own.
QX_API bool ReadCircuitKinds(CKindColumns& kinds);

// The line rules, one line each. False for a line that holds no ":" (it names nothing).
QX_API bool ParseTerminalKindLine(const CString& line, CKindColumns& kinds);
QX_API bool ParseWireKindLine(const CString& line, CKindColumns& kinds);
QX_API bool ParseCircuitKindLine(const CString& line, CKindColumns& kinds);
