// Typed reads of an entity's extended data: the first item of a group code under an application.
#pragma once

#include "drawing/model/AcDbObject.h"

// The kind of value an xdata group code holds: below 1010 text, 1010-1039 a point, 1040-1059 a real,
// 1060-1070 a 16-bit integer (read widened), 1071 a 32-bit integer, above 1071 text.
enum class XDataKind { Text, Point, Real, Integer16, Integer32 };
QX_API XDataKind XDataKindOfCode(int code);

struct QX_API XDataValue {
    XDataKind kind = XDataKind::Text;
    CString text;
    AcGePoint3d point;
    double real = 0.0;
    int integer = 0;
};

// The first item whose group code is `code` in the application's xdata, as the code's kind. False, with
// the output as it was, when there is no such item or no xdata.
QX_API bool GetXDataValue(const AcDbObject* entity, CString application, int code, XDataValue& value);
// The same for the text kinds; false for a code of another kind.
QX_API bool GetXDataValue(const AcDbObject* entity, CString application, int code, CString& value);
QX_API bool HasXData(const AcDbObject* entity, CString application);
