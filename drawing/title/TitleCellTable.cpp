// Parsing the cell table of a title block.
#include "drawing/title/TitleCellTable.h"

#include "support/NumberText.h"

namespace {

// Splits off the text before the next "|"; false, with `rest` untouched, when there is none.
bool takeField(CString& rest, CString& field) {
    const int bar = rest.Find(u'|');
    if (bar < 0) return false;
    field = rest.Left(bar);
    rest = rest.Mid(bar + 1);
    return true;
}

int findMarker(const CStringArray& items, const char16_t* marker, int from) {
    for (int i = from; i < items.GetSize(); ++i)
        if (items[i].EqualsNoCase(marker)) return i;
    return -1;
}

} // namespace

TitleCell ParseTitleCellLine(const CString& line) {
    TitleCell cell;
    CString rest = line;
    if (!takeField(rest, cell.Name)) {
        cell.Name = rest;
        return cell;
    }
    double* const numbers[] = {&cell.X1, &cell.Y1, &cell.X2, &cell.Y2, &cell.Param1, &cell.Param2};
    for (double* number : numbers) {
        CString field;
        if (!takeField(rest, field)) break;
        *number = QxToDouble(field);
    }
    cell.Value = rest;
    return cell;
}

TitleCellTable ParseTitleCellTable(const CStringArray& items, const AcGePoint3d& insertPoint) {
    TitleCellTable table;
    table.InsertPoint = insertPoint;
    const int begin = findMarker(items, u"$BEGINETITLE", 0);
    // The item behind the begin marker names the sheet, not a cell.
    const int first = begin < 0 ? 0 : begin + 2;
    for (int i = first; i < items.GetSize(); ++i) {
        if (items[i].EqualsNoCase(u"$ENDTITLE")) break;
        if (items[i].Find(u'|') < 0) continue;
        if (table.Cells.GetSize() >= TitleCellTable::kMaxCells) break;
        TitleCell cell = ParseTitleCellLine(items[i]);
        cell.X1 += insertPoint.x;
        cell.X2 += insertPoint.x;
        cell.Y1 += insertPoint.y;
        cell.Y2 += insertPoint.y;
        table.Cells.Add(std::move(cell));
    }
    return table;
}
