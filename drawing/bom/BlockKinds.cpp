// Kinds of block references and the attributes of first-class symbols.
#include "drawing/bom/BlockKinds.h"

#include "drawing/access/QxDwgObjects.h"
#include "support/XDataHelpers.h"

namespace {

bool hasArea(const AcDbEntity& entity) {
    AcDbExtents extents;
    if (entity.getGeomExtents(extents) != Acad::eOk || !extents.isValid()) return false;
    return extents.maxPoint().x > extents.minPoint().x && extents.maxPoint().y > extents.minPoint().y;
}

CString symbolValue(AcDbEntity* entity, const char16_t* application) {
    if (QxAsBlockReference(entity) == nullptr) return {};
    CString value;
    GetXDataValue(entity, application, 1000, value);
    return value;
}

} // namespace

int QxClassifyBlock(AcDbEntity* entity) {
    AcDbBlockReference* reference = QxAsBlockReference(entity);
    if (reference == nullptr) return kNotBlockReference;
    if (!hasArea(*reference)) return kEmptyExtents;
    if (QxGetBlockName(reference).Left(2).EqualsNoCase(u"*U")) {
        if (HasXData(reference, QX_SYMB2_MULTI)) return kAnonymousMulti;
        if (HasXData(reference, QX_SYMB2_PART2LIB)) return kAnonymousPart2Lib;
        return kAnonymousOther;
    }
    if (HasXData(reference, QX_SYMB2_LABEL)) return kSecondClassSymbol;
    for (const char16_t* key : {QX_SYMB1_LABEL, QX_SYMB1_TYPE, QX_SYMB1_CODE, QX_SYMB1_NAME})
        if (HasXData(reference, key)) return kFirstClassSymbol;
    return kOtherBlock;
}

CString QxGetSymbType(AcDbEntity* entity) {
    return symbolValue(entity, QX_SYMB1_TYPE);
}

CString QxGetSymbCode(AcDbEntity* entity) {
    return symbolValue(entity, QX_SYMB1_CODE);
}

CString QxGetSymbName(AcDbEntity* entity) {
    return symbolValue(entity, QX_SYMB1_NAME);
}
