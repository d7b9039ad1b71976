// CGetPartInfo: reads the BOM tables of drawings part by part. Each label cell of a table carries the
// device's placement attributes and its components in text records; the reader builds one
// CPartBomDataBase per location and label, across all drawings of a list.
#pragma once

#include "drawing/model/AcDb.h"
#include "drawing/parts/PartRecords.h"

class QX_API CGetPartInfo {
public:
    virtual ~CGetPartInfo() = default;

    // Every drawing in order, path-match mode 1, all into the same `parts`. False only for an empty list.
    bool GetPartsOfDwgs(const CStringArray& drawings, CPartBomDataBaseArray& parts) const;
    // False when the drawing does not open.
    bool GetPartsOfOneDwg(CString path, int flag, CPartBomDataBaseArray& parts) const;
    // False for a null database.
    bool GetPartsOfDatabase(AcDbDatabase* database, CString path, int flag, CString location,
                            CPartBomDataBaseArray& parts) const;
};
