// What the extraction reads of a drawing above the model, shared by the harnesses that make the drawing
// from raw bytes and from a template: the secondary BOM table, the title block, the head, the circuits
// with their BOMs, the part records and the drawing's location, each with the shape its callers rely on.
#pragma once

#include "drawing/model/AcDb.h"

namespace fuzz {

// `path` is where the drawing lies (the readers name it in their records); `database` is that drawing.
void ReadAsTheExtractionDoes(AcDbDatabase* database, const CString& path);

} // namespace fuzz
