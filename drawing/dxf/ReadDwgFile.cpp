// Reading a drawing file into a database: "X.dwg" holds DXF itself, or has "X.dxf" beside it.
#include "drawing/dxf/DxfReader.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

namespace {

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

// The DXF text of a drawing path, or false. The drawing file itself must exist: a lone "X.dxf" is no
// drawing "X.dwg".
bool readDrawingText(const CString& path, std::string& bytes) {
    if (QxFs::IsFolder(path) || !QxFs::ReadBytes(path, bytes)) return false;
    if (LooksLikeDxf(bytes)) return true;
    if (!GetFileExtension(path).EqualsNoCase(u"dwg")) return false;
    const CString beside = RemoveFileExtension(path) + u".dxf";
    return !QxFs::IsFolder(beside) && QxFs::ReadBytes(beside, bytes) && LooksLikeDxf(bytes);
}

} // namespace

Acad::ErrorStatus AcDbDatabase::readDwgFile(const CString& fileName, int, bool, const char16_t*) {
    std::string bytes;
    if (!readDrawingText(fileName, bytes)) {
        clear();
        return QxFs::Exists(fileName) ? Acad::eBadDwgHeader : Acad::eFileNotFound;
    }
    const Acad::ErrorStatus status = statusOf(ReadDxfText(bytes, *this));
    if (status == Acad::eOk) setOriginalFileName(fileName);
    return status;
}
