// Reading DXF text into a database: the loader's records go to the builder.
#include "drawing/dxf/DxfReader.h"

#include "drawing/dxf/DxfBuilder.h"
#include "drawing/dxf/DxfFileText.h"

namespace {

// `file`, when given, is where the loader's text comes from.
DxfLoadStatus readRecords(DxfLoader& loader, size_t sizeHint, AcDbDatabase& database, const DxfFileText* file) {
    DxfLoadStatus status = DxfLoadStatus::Ok;
    {
        DxfBuilder builder(database);
        // The drawing's objects are cut from the database's arena; the builder emptied the database first.
        const AcDbArenaScope arena(database.arena());
        // Drawings hold roughly one object for every two to three hundred bytes: the table is made for the
        // fewer, and grows once when there are more.
        database.reserveObjects(sizeHint / 256);
        DxfRecord record;
        while (loader.next(record)) builder.add(record);
        status = loader.status();
        if (status == DxfLoadStatus::Ok && file != nullptr && file->failed()) status = DxfLoadStatus::Truncated;
        if (status == DxfLoadStatus::Ok) builder.finish();
    }
    // Only now, with the builder and what it still held gone, may the arena go with the rest.
    if (status != DxfLoadStatus::Ok) database.clear();
    return status;
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
