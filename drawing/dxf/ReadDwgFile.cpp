// Reading a drawing file into a database.
#include "drawing/model/AcDbDatabase.h"

Acad::ErrorStatus AcDbDatabase::readDwgFile(const CString&, int, bool, const char16_t*) {
    return Acad::eNotImplemented;
}
