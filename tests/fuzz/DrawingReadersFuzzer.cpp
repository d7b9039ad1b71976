// A drawing from raw bytes, opened as the host opens one beside the editor, then read by every reader above
// the model as the extraction reads it.
#include "ReadEveryDrawingReader.h"
#include "FuzzSupport.h"

#include "drawing/access/QxDwgOpen.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString path = fuzz::WriteScratchFile("drawing.dwg", data, size);
    const QxDwgDatabase drawing(path, 1);
    if (drawing) fuzz::ReadAsTheExtractionDoes(drawing.get(), path);
    return 0;
}
