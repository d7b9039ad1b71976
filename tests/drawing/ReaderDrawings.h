// Drawings for the reader tests, made with the model's builder: BOM table rows, title blocks, circuit
// blocks, and the columns the readers fill.
#pragma once

#include "drawing/model/DrawingBuilder.h"
#include "drawing/primary/SysHead.h"
#include "support/CArray.h"

#include <vector>

// The nine columns of a secondary drawing's BOM table.
struct BomColumnsRead {
    CStringArray names, types, counts, codes, prices, kinds, labels, notes, extras;
    int size() const { return names.GetSize(); }

    // Each row as label|type|name|count|note|code|price|kind|extra; columns of unequal length show as such.
    std::vector<CString> rows() const {
        for (const CStringArray* column : {&types, &counts, &codes, &prices, &kinds, &labels, &notes, &extras})
            if (column->GetSize() != size()) return {u"columns of unequal length"};
        std::vector<CString> texts;
        for (int i = 0; i < size(); ++i)
            texts.push_back(labels[i] + u"|" + types[i] + u"|" + names[i] + u"|" + counts[i] + u"|" + notes[i] + u"|" +
                            codes[i] + u"|" + prices[i] + u"|" + kinds[i] + u"|" + extras[i]);
        return texts;
    }
};

// A block definition with a square of the given side, so that its references have extents.
inline AcDbObjectId DefineSquareBlock(DrawingBuilder& b, const CString& name, double side = 10.0) {
    const AcDbObjectId block = b.defineBlock(name);
    b.addPolyline({{0, 0}, {side, 0}, {side, side}, {0, side}}, true, block);
    return block;
}

// An xrecord of text items from a list known only at run time.
inline void AddTextRecord(DrawingBuilder& b, AcDbObjectId object, const CString& entry, const std::vector<CString>& lines) {
    ResItems items;
    for (const CString& line : lines) items.push_back(ResItem::text(1, line));
    b.addXrecord(object, entry, items);
}

// The head table as read: result|found flags (1, bus, 2)|text1|textBus|text2, then the three ids.
struct HeadRead {
    CString text;
    AcDbObjectId id1, id2, idBus;
};

inline HeadRead ReadHead(AcDbDatabase* database) {
    bool found1 = true, foundBus = true, found2 = true;
    CString text1 = u"stale", textBus = u"stale", text2 = u"stale";
    HeadRead read;
    const bool result = QxReadSysHead(database, found1, foundBus, found2, text1, textBus, text2, read.id1, read.id2,
                                      read.idBus);
    auto flag = [](bool value) { return value ? u"1" : u"0"; };
    read.text = CString(flag(result)) + u"|" + flag(found1) + flag(foundBus) + flag(found2) + u"|" + text1 + u"|" +
                textBus + u"|" + text2;
    return read;
}
