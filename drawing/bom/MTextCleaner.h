// CGetTextFromMText: strips the format codes of an MText cell so that only its words remain.
#pragma once

#include "support/CString.h"

class QX_API CGetTextFromMText {
public:
    // One place in the text being cleaned: a format code (kind 1: a backslash and its letter) or a
    // semicolon (kind 2), which ends the arguments of the format code before it.
    struct TypeSpecialSymbPos {
        int Pos = 0;
        int Kind = 0;
    };
    enum : int { kFormatCode = 1, kSemicolon = 2 };

    virtual ~CGetTextFromMText() = default;

    // The text without paragraph breaks, format codes, their arguments and braces, trimmed. A text without
    // any backslash keeps its braces and semicolons.
    CString GetText(CString text) const;
};

// The same through a temporary object.
QX_API CString QxCleanMText(CString text);
