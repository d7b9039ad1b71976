// Reading ASCII DXF (R12 to R2018) into a drawing database.
#pragma once

#include "drawing/dxf/DxfLoader.h"
#include "drawing/model/AcDbDatabase.h"

#include <cstdint>
#include <string_view>

// Replaces the database's content with the drawing in `text`. On any status but Ok the database is
// left empty: a drawing that is cut short or broken in its frame does not open.
QX_API DxfLoadStatus ReadDxfText(std::string_view text, AcDbDatabase& database);

class DxfFileText;
// The same for a file read piece by piece.
DxfLoadStatus ReadDxfFile(DxfFileText& file, AcDbDatabase& database);

// How many drawing files this process has read into a database (readDwgFile): what the benchmarks print
// per command and what tests count.
QX_API std::uint64_t QxDrawingFilesRead();
