// The template drawing that every new device folder gets a copy of: Support\TEMPLATE\图纸.DWG of the install
// folder. Here it is DXF text (R2000), which the drawing reader takes under a .DWG name: an A3 frame with a
// title block whose cell table (the xrecord CORVANE_TITLE) says where the drawing number and name stand.
#pragma once

#include "support/CString.h"

#include <string>

// The drawing's name is written in the title block; the number is left for the person to fill in.
inline constexpr const char16_t* HM_TEMPLATE_DRAWING_NAME = u"图纸";

// The DXF text of the template drawing, ASCII only: other characters as \U+XXXX escapes.
QX_API std::string TemplateDrawingDxf();

// Writes the template into `installDir` (a folder with a trailing backslash) + "Support\TEMPLATE\图纸.DWG",
// making the folders, unless a template is there already: one that the person put there is kept. True when a
// template stands afterwards.
QX_API bool LayOutTemplateDrawing(const CString& installDir);
