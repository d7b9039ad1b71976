// TitleCellTable: the cell table that a title block stores in its xrecord "CORVANE_TITLE": for each cell
// a caption and a rectangle on the sheet where that cell's text is written.
#pragma once

#include "drawing/model/AcGe.h"
#include "support/CArray.h"

struct QX_API TitleCell {
    CString Name;
    // Left, top, right and bottom edges; relative to the insertion point as stored, absolute once read.
    double X1 = 0.0;
    double Y1 = 0.0;
    double X2 = 0.0;
    double Y2 = 0.0;
    double Param1 = 0.0;
    double Param2 = 0.0;
    // Everything behind the seventh "|", further "|" included.
    CString Value;
};

struct QX_API TitleCellTable {
    // The table's size: further cell lines are passed over.
    static constexpr int kMaxCells = 100;

    AcGePoint3d InsertPoint;
    CArray<TitleCell> Cells;
};

// One cell line: eight fields separated by "|". Numbers are read as far as they are numbers; a line that
// ends early leaves its remaining numbers 0 and its rest as the value.
QX_API TitleCell ParseTitleCellLine(const CString& line);

// The items of the xrecord: after "$BEGINETITLE" and the item behind it (or from the first item without a
// begin marker) up to "$ENDTITLE", markers compared ignoring case; lines without "|" are passed over.
// Cells are made absolute by adding the insertion point.
QX_API TitleCellTable ParseTitleCellTable(const CStringArray& items, const AcGePoint3d& insertPoint);
