// Reading the secondary drawing of a group or a drawer: its BOM rows less the parts that the primary
// diagram already counts, and its drawing number and name.
#pragma once

#include "drawing/assembly/ReferSourceRecords.h"

// Nothing happens unless m_strDrawing names an existing file (a list of several paths names none). The
// rows replace m_arrDwgBoms; a row whose code and type (ignoring case) are those of a part of m_arrParts is
// left out. An empty drawing number falls back on the drawing name, then on the file name without folder
// and extension.
QX_API void QxReadReferDrawing(CDrawerInfo& source);
