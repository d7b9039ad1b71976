// Ordering the description words of a new project or device file.
#include "project/folders/DescriptionNotes.h"

#include "support/database/WordList.h"

#include <utility>

void OrderDescriptionRows(CStringArray& rows, bool forProject) {
    const auto belongsInFront = [forProject](const CString& row) { return row.Contains(u"工程") == forProject; };
    for (int i = 0; i < rows.GetSize(); ++i) {
        if (belongsInFront(rows[i])) continue;
        for (int later = i + 1; later < rows.GetSize(); ++later) {
            if (!belongsInFront(rows[later])) continue;
            std::swap(rows[i], rows[later]);
            break;
        }
    }
}

PrjNoteList MakeDescriptionNotes(bool forProject) {
    CStringArray rows;
    GetWordList(HM_DESCRIPTION_KEY, rows);
    OrderDescriptionRows(rows, forProject);
    PrjNoteList notes;
    for (const CString& row : rows) notes.Add({row, CString()});
    return notes;
}
