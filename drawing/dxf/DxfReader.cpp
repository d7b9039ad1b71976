// Reading DXF text into a database: the loader's records go to the builder.
#include "drawing/dxf/DxfReader.h"

#include "drawing/dxf/DxfBuilder.h"
#include "drawing/dxf/DxfFileText.h"

namespace {

// `file`, when given, is where the loader's text comes from: what lies behind the record in hand is given
// back as the read moves on.
DxfLoadStatus readRecords(DxfLoader& loader, size_t sizeHint, AcDbDatabase& database, DxfFileText* file) {
    DxfBuilder builder(database);
    // Drawings hold roughly one object for every two hundred bytes.
    database.reserveObjects(sizeHint / 200);
    DxfRecord record;
    while (loader.next(record)) {
        if (file != nullptr) file->releaseBefore(record.type.data());
        builder.add(record);
    }
    if (loader.status() != DxfLoadStatus::Ok || (file != nullptr && file->failed())) {
        database.clear();
        return loader.status() != DxfLoadStatus::Ok ? loader.status() : DxfLoadStatus::Truncated;
    }
    builder.finish();
    return DxfLoadStatus::Ok;
}

} // namespace

DxfLoadStatus ReadDxfText(std::string_view text, AcDbDatabase& database) {
    DxfLoader loader(text);
    return readRecords(loader, text.size(), database, nullptr);
}

DxfLoadStatus ReadDxfFile(DxfFileText& file, AcDbDatabase& database) {
    DxfLoader loader(file.text(), &file);
    return readRecords(loader, file.size(), database, &file);
}
