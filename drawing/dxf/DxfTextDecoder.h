// DxfTextDecoder: turns the bytes of a DXF string into text as CAD programs do. Before R2007 the bytes
// are in the drawing's code page ($DWGCODEPAGE; without it the legacy code page) and \U+XXXX and
// \M+NXXXX escapes stand for characters outside it; from R2007 on strings are UTF-8. In every version
// control characters and the caret are written in caret notation ("^I" a tab, "^ " a caret).
#pragma once

#include "support/CString.h"
#include "support/Export.h"

#include <string>
#include <string_view>

class QX_API DxfTextDecoder {
public:
    DxfTextDecoder();

    // "AC1021" and later mean UTF-8.
    void setVersion(std::string_view acadVer);
    // "ANSI_936" and the like; unknown names leave the legacy code page in force.
    void setCodePage(std::string_view dwgCodePage);

    CString decode(std::string_view bytes) const;

private:
    std::u16string decodeBytes(std::string_view bytes) const;

    bool m_utf8 = false;
    std::string m_codePage;
};

// The iconv name for a $DWGCODEPAGE value, or empty when there is none.
QX_API std::string IconvNameOfDwgCodePage(std::string_view dwgCodePage);
