// Reading DXF text into a database: the loader's records go to the builder.
#include "drawing/dxf/DxfReader.h"

#include "drawing/dxf/DxfBuilder.h"

DxfLoadStatus ReadDxfText(std::string_view text, AcDbDatabase& database) {
    DxfLoader loader(text);
    DxfBuilder builder(database);
    // Drawings hold roughly one object for every few hundred bytes.
    database.reserveObjects(text.size() / 256);
    DxfRecord record;
    while (loader.next(record)) builder.add(record);
    if (loader.status() != DxfLoadStatus::Ok) {
        database.clear();
        return loader.status();
    }
    builder.finish();
    return DxfLoadStatus::Ok;
}
