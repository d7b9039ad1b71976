// Reading a drawing file into a database: "X.dwg" holds DXF itself, or has "X.dxf" beside it.
#include "drawing/dxf/DxfFileText.h"
#include "drawing/dxf/DxfReader.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

#include <atomic>

namespace {

std::atomic<std::uint64_t> g_filesRead{0};

Acad::ErrorStatus statusOf(DxfLoadStatus status) {
    switch (status) {
    case DxfLoadStatus::Ok: return Acad::eOk;
    case DxfLoadStatus::NotDxf:
    case DxfLoadStatus::Binary: return Acad::eBadDwgHeader;
    case DxfLoadStatus::Truncated:
    case DxfLoadStatus::Corrupt: return Acad::eDwgNotRecoverable;
    }
    return Acad::eBadDwgHeader;
}

std::unique_ptr<DxfFileText> openFile(const CString& path) {
    if (QxFs::IsFolder(path)) return nullptr;
    const auto native = QxFs::Resolve(path);
    return native ? DxfFileText::open(*native) : nullptr;
}

// The DXF text of a drawing path, opened, or null. The drawing file itself must exist and be readable: a
// lone "X.dxf" is no drawing "X.dwg".
std::unique_ptr<DxfFileText> openDrawingText(const CString& path) {
    auto file = openFile(path);
    if (!file) return nullptr;
    if (LooksLikeDxf(file->text(), file.get())) return file;
    if (!GetFileExtension(path).EqualsNoCase(u"dwg")) return nullptr;
    auto beside = openFile(RemoveFileExtension(path) + u".dxf");
    return beside && LooksLikeDxf(beside->text(), beside.get()) ? std::move(beside) : nullptr;
}

} // namespace

Acad::ErrorStatus AcDbDatabase::readDwgFile(const CString& fileName, int, bool, const char16_t*) {
    const auto file = openDrawingText(fileName);
    if (!file) {
        clear();
        return QxFs::Exists(fileName) ? Acad::eBadDwgHeader : Acad::eFileNotFound;
    }
    g_filesRead.fetch_add(1, std::memory_order_relaxed);
    const Acad::ErrorStatus status = statusOf(ReadDxfFile(*file, *this));
    if (status == Acad::eOk) setOriginalFileName(fileName);
    return status;
}

std::uint64_t QxDrawingFilesRead() {
    return g_filesRead.load(std::memory_order_relaxed);
}
