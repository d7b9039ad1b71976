// What kind of block reference an entity is, told by its extents, its block's name and its symbol keys,
// and the symbol attributes of first-class symbols.
#pragma once

#include "drawing/model/AcDb.h"

inline constexpr char16_t QX_SYMB1_LABEL[] = u"QX_SYMB1_LABEL";
inline constexpr char16_t QX_SYMB1_TYPE[] = u"QX_SYMB1_TYPE";
inline constexpr char16_t QX_SYMB1_CODE[] = u"QX_SYMB1_CODE";
inline constexpr char16_t QX_SYMB1_NAME[] = u"QX_SYMB1_NAME";
inline constexpr char16_t QX_SYMB2_LABEL[] = u"QX_SYMB2_LABEL";
inline constexpr char16_t QX_SYMB2_MULTI[] = u"QX_SYMB2_MULTI";
inline constexpr char16_t QX_SYMB2_PART2LIB[] = u"QX_SYMB2_PART2LIB";

// Results of QxClassifyBlock.
enum QxBlockKind : int {
    kNotBlockReference = 0,
    kEmptyExtents = 1,
    kFirstClassSymbol = 2,
    kSecondClassSymbol = 3,
    kOtherBlock = 4,
    kAnonymousMulti = 5,
    kAnonymousPart2Lib = 6,
    kAnonymousOther = 7,
};

// Tests in this order: class, extents, anonymous name ("*U"), second-class label, first-class keys.
QX_API int QxClassifyBlock(AcDbEntity* entity);

// The first 1000 item of QX_SYMB1_TYPE, QX_SYMB1_CODE, QX_SYMB1_NAME; empty for an entity that is no
// block reference or has no such xdata.
QX_API CString QxGetSymbType(AcDbEntity* entity);
QX_API CString QxGetSymbCode(AcDbEntity* entity);
QX_API CString QxGetSymbName(AcDbEntity* entity);
