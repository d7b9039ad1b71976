// Reading the secondary drawing of a group or a drawer.
#include "drawing/assembly/ReferDrawing.h"

#include "drawing/access/QxDwgOpen.h"
#include "drawing/bom/DwgBomRows.h"
#include "drawing/title/TitleBlock.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/PathText.h"

#include <memory>

namespace {

bool countedByPrimary(const CReferSourcePartArray& parts, const CString& code, const CString& type) {
    for (const CReferSourcePartBomInfo* part : parts)
        if (part->m_strCode.EqualsNoCase(code) && part->m_strType.EqualsNoCase(type)) return true;
    return false;
}

void removeRow(CBomOfDwg& rows, int j) {
    for (CStringArray* column : {&rows.Names, &rows.Types, &rows.Counts, &rows.Codes, &rows.Prices, &rows.Kinds,
                                 &rows.Labels, &rows.Notes, &rows.Extras})
        if (j < column->GetSize()) column->RemoveAt(j);
}

} // namespace

void QxReadReferDrawing(CDrawerInfo& source) {
    const CString path = source.m_strDrawing;
    if (path.IsEmpty() || !FileExists(path) || QxFs::IsFolder(path)) return;
    QxFreeBomOfDwgs(source.m_arrDwgBoms);

    auto rows = std::make_unique<CBomOfDwg>();
    rows->Path = path;
    QxGetDwgBomRows(path, rows->Names, rows->Types, rows->Counts, rows->Codes, rows->Prices, rows->Kinds,
                    rows->Labels, rows->Notes, rows->Extras);
    for (int j = 0; j < rows->Codes.GetSize() && j < rows->Types.GetSize();) {
        if (countedByPrimary(source.m_arrParts, rows->Codes[j], rows->Types[j])) removeRow(*rows, j);
        else ++j;
    }

    CString number;
    CString name;
    {
        const QxDwgDatabase drawing(path, 1);
        if (drawing) QxGetDwgTitle(drawing.get(), number, name);
    }
    if (number.IsEmpty()) number = name.IsEmpty() ? RemoveFileExtension(GetFileNameOfPath(path)) : name;
    source.m_strTitleNo = number;
    source.m_strTitleName = name;
    source.m_arrDwgBoms.Add(rows.release());
}
