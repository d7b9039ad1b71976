// Typed reads of extended data.
#include "support/XDataHelpers.h"

XDataKind XDataKindOfCode(int code) {
    if (code < 1010 || code > 1071) return XDataKind::Text;
    if (code <= 1039) return XDataKind::Point;
    if (code <= 1059) return XDataKind::Real;
    if (code <= 1070) return XDataKind::Integer16;
    return XDataKind::Integer32;
}

bool GetXDataValue(const AcDbObject* entity, CString application, int code, XDataValue& value) {
    // An empty name would ask the host for the xdata of every application.
    if (entity == nullptr || application.IsEmpty()) return false;
    const ResbufPtr chain(entity->xData(application.c_str()));
    for (const resbuf* item = chain.get(); item != nullptr; item = item->rbnext) {
        if (item->restype != code) continue;
        XDataValue read;
        read.kind = XDataKindOfCode(code);
        switch (read.kind) {
        case XDataKind::Text: read.text = item->resval.rstring ? item->resval.rstring : u""; break;
        case XDataKind::Point:
            read.point = {item->resval.rpoint[0], item->resval.rpoint[1], item->resval.rpoint[2]};
            break;
        case XDataKind::Real: read.real = item->resval.rreal; break;
        case XDataKind::Integer16: read.integer = item->resval.rint; break;
        case XDataKind::Integer32: read.integer = item->resval.rlong; break;
        }
        value = read;
        return true;
    }
    return false;
}

bool GetXDataValue(const AcDbObject* entity, CString application, int code, CString& value) {
    if (XDataKindOfCode(code) != XDataKind::Text) return false;
    XDataValue read;
    if (!GetXDataValue(entity, std::move(application), code, read)) return false;
    value = read.text;
    return true;
}

bool HasXData(const AcDbObject* entity, CString application) {
    if (entity == nullptr || application.IsEmpty()) return false;
    const ResbufPtr chain(entity->xData(application.c_str()));
    return chain != nullptr;
}
