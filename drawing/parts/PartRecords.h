// The part records of drawings: one CPartBomDataBase per location and label, with the label's BOM rows
// (COnePartBom) and each row's components (COneComponent).
#pragma once

#include "support/CArray.h"

#include <memory>

// Text that many records hold alike (the merged labels of one label cell, which may list thousands of
// labels): kept once and shared by every record made from the cell.
class QX_API CSharedText {
public:
    CSharedText() = default;
    CSharedText(CString text) : m_text(std::make_shared<const CString>(std::move(text))) {}
    const CString& get() const {
        static const CString empty;
        return m_text ? *m_text : empty;
    }
    operator const CString&() const { return get(); }
    friend bool operator==(const CSharedText& a, const CString& b) { return a.get() == b; }

private:
    std::shared_ptr<const CString> m_text;
};

// One component of a part, from the label cell's component record.
class QX_API COneComponent {
public:
    CString Name;
    CString Type;
    CString Code;
    CString Count;
};

// One BOM row of a label.
class QX_API COnePartBom {
public:
    COnePartBom() = default;
    virtual ~COnePartBom();
    COnePartBom(const COnePartBom&) = delete;
    COnePartBom& operator=(const COnePartBom&) = delete;

    // The type cell's QXBOM_PRICE.
    CString Price;
    CString Name;
    CString Type;
    // The type cell's QXBOM_CODE as it stands: no fallback to the type text.
    CString Code;
    CString Note;
    // The number cell with its leading "Z" trimmed.
    CString No;
    CString Path;
    int PathFlag = 0;
    CString DwgLocation;
    // Handle of the label cell.
    CString Handle;
    CString Label;
    CString Count;
    // The type cell's QXBOM_DEVICETYPE.
    CString DeviceType;
    CArray<COneComponent*, COneComponent*> Components;  // owned
};

// One labelled device at one location.
class QX_API CPartBomDataBase {
public:
    CPartBomDataBase() = default;
    virtual ~CPartBomDataBase();
    CPartBomDataBase(const CPartBomDataBase&) = delete;
    CPartBomDataBase& operator=(const CPartBomDataBase&) = delete;

    CString Location;
    CString Label;
    CSharedText MergedLabels;
    CString ElementDesc;
    CArray<COnePartBom*, COnePartBom*> PartBoms;  // owned
    CString SeqNo;
    CString BoardNo;
    CString BoardName;
    CString BoardSide;
    CString RowSplit;
    CString WirePathNo;
    CString WireStampBlock;
    CString WireStampAngle;
    CString LayoutScale;
    CString ElementOrderNo;
    CString ElementClass;
    CString ElementLabelDistance;
    CString CabinetDrawingBlock;
    CString BreakerDrawingBlock;
};

// The array owns its records.
using CPartBomDataBaseArray = CArray<CPartBomDataBase*, CPartBomDataBase*>;

// Deletes each record, nulls its slot and empties the array.
QX_API void QxFreePartBoms(CPartBomDataBaseArray& parts);
