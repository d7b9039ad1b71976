// The cabinet groups of a primary diagram: a group per cabinet (CReferSourceGroupInfo), its drawers
// (CDrawerInfo) and their counted primary parts (CReferSourcePartBomInfo).
#pragma once

#include "drawing/bom/BomOfDwg.h"

// One primary part row of a circuit.
class QX_API CReferSourcePartBomInfo {
public:
    virtual ~CReferSourcePartBomInfo() = default;

    CString m_strType;
    // The material code, or the type where the circuit gives none.
    CString m_strCode;
    CString m_strName;
    // Quantity as decimal text.
    CString m_strCount;
    // Two fields of the record that this module leaves empty.
    CString m_strExtra1;
    CString m_strExtra2;
};

using CReferSourcePartArray = CArray<CReferSourcePartBomInfo*, CReferSourcePartBomInfo*>;

// One drawer of a cabinet. A group has every field of a drawer, so both read their secondary drawing by
// the same steps.
class QX_API CDrawerInfo {
public:
    CDrawerInfo() = default;
    virtual ~CDrawerInfo();
    CDrawerInfo(const CDrawerInfo&) = delete;
    CDrawerInfo& operator=(const CDrawerInfo&) = delete;

    // A drawer: the text between the brackets of the circuit number. A group: the cabinet name.
    CString m_strName;
    // The circuit's use and type; left empty for a drawer.
    CString m_strUse;
    CString m_strType;
    CString m_strExtra4;
    CReferSourcePartArray m_arrParts;  // owned
    // The circuit's secondary drawings, taken as one path.
    CString m_strDrawing;
    CString m_strExtra7;
    // Drawing number of that drawing; its name, or its file name, where it has none.
    CString m_strTitleNo;
    CString m_strTitleName;
    CString m_strExtra10;
    CBomOfDwgArray m_arrDwgBoms;  // owned
    CString m_strExtra12;
};

using CDrawerArray = CArray<CDrawerInfo*, CDrawerInfo*>;

// One cabinet. A group made from circuits with drawers keeps its parts and drawing rows in its drawers.
class QX_API CReferSourceGroupInfo : public CDrawerInfo {
public:
    ~CReferSourceGroupInfo() override;

    CDrawerArray m_arrDrawers;  // owned
};

// Owns its elements.
using CReferSourceGroupArray = CArray<CReferSourceGroupInfo*, CReferSourceGroupInfo*>;

// Deletes every group and leaves the array empty with its storage released.
QX_API void QxFreeReferGroups(CReferSourceGroupArray& groups);
