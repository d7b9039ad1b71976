// The text helpers under the drawing readers, on any text, with the promises the readers build on checked
// here: the MText cleaner never lengthens a text, a title cell table never holds more than its 100 cells,
// record groups keep one value per key, and a circuit's pair list gives whole pairs and counts in digits.
#include "FuzzSupport.h"

#include "drawing/bom/MTextCleaner.h"
#include "drawing/parts/RecordGroups.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/CircuitValues.h"
#include "drawing/title/TitleCellTable.h"
#include "support/TextHelpers.h"

#include <algorithm>

namespace {

// Lines as the readers get them from xrecords and xdata: one item per line of the input.
CStringArray linesOf(const CString& text) {
    CStringArray lines;
    SplitString(text, u"\n", lines);
    return lines;
}

void checkRecordGroups(const CStringArray& lines, const std::vector<CString>& keys) {
    const RecordGroups result(lines, keys);
    fuzz::Require(result.size() <= static_cast<size_t>(lines.GetSize()), "no more record groups than lines");
    // Each value a group holds is the text behind its own key on one of the lines: one value per key, taken
    // from the lines, never a mix of two. The first groups are enough to see it.
    const size_t checked = std::min<size_t>(result.size() + 1, 16);
    for (size_t group = 0; group < checked; ++group)
        for (int key = 0; key < static_cast<int>(keys.size()); ++key) {
            const CString value = group < result.size() ? result.value(group, key) : result.lastValue(key);
            if (value.IsEmpty()) continue;
            bool fromALine = false;
            for (const CString& line : lines) fromALine = fromALine || line == keys[key] + value;
            fuzz::Require(fromALine, "a record group's value is the text behind its key on one line");
        }
}

void checkCircuitPairs(const CStringArray& pairs) {
    CStringArray types, codes, names, counts, prices;
    QxParseCircuitBomPairs(pairs, types, codes, names, counts, prices);
    const int values = types.GetSize() + codes.GetSize() + names.GetSize() + counts.GetSize() + prices.GetSize();
    fuzz::Require(values <= pairs.GetSize() / 2, "a circuit pair list gives at most one value per whole pair");
    for (const CString& count : counts) fuzz::Require(IsDigitString(count), "a circuit part's count is a number");
}

void checkCircuitValues(const CString& text) {
    QxCircuitValue(text);
    QxCircuitNumber(text);
    QxCircuitAnnotation(text);
    CircuitRow row;
    if (QxParseCircuitRow(text, row)) fuzz::Require(!row.name.IsEmpty(), "a circuit row has a name");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString text = CString::FromUtf8(std::string_view(reinterpret_cast<const char*>(data), size));

    fuzz::Require(QxCleanMText(text).GetLength() <= text.GetLength(), "the MText cleaner never lengthens a text");

    const CStringArray lines = linesOf(text);
    const TitleCellTable table = ParseTitleCellTable(lines, AcGePoint3d{1.0, 2.0, 0.0});
    fuzz::Require(table.Cells.GetSize() <= TitleCellTable::kMaxCells, "a title cell table holds at most 100 cells");
    for (int i = 0; i < lines.GetSize() && i < 64; ++i) ParseTitleCellLine(lines[i]);

    checkRecordGroups(lines, LabelRecordKeys());
    checkRecordGroups(lines, ComponentRecordKeys());
    checkCircuitPairs(lines);
    checkCircuitValues(text);

    CString replaced;
    ReplaceRootSign(text, replaced);
    fuzz::Require(replaced.GetLength() <= text.GetLength(), "the root sign escape only ever shortens a text");
    IsDigitString(text);
    return 0;
}
