// qxinspect bom FILE: the rows of a secondary drawing's BOM table, one object per row keyed by the
// columns of CBomOfDwg.
#include "ReaderViewSupport.h"
#include "Views.h"
#include "drawing/bom/DwgBomRows.h"

namespace {

int showBom(const std::string& file) {
    const CString path = DrawingArgumentPath(file);
    CStringArray names, types, counts, codes, prices, kinds, labels, notes, extras;
    if (!QxGetDwgBomRows(path, names, types, counts, codes, prices, kinds, labels, notes, extras))
        return ComplainUnreadable(file);
    ReaderJson rows = ReaderJson::array();
    for (int i = 0; i < names.GetSize(); ++i) {
        rows.push_back({{"Names", names[i].ToUtf8()},
                        {"Types", types[i].ToUtf8()},
                        {"Counts", counts[i].ToUtf8()},
                        {"Codes", codes[i].ToUtf8()},
                        {"Prices", prices[i].ToUtf8()},
                        {"Kinds", kinds[i].ToUtf8()},
                        {"Labels", labels[i].ToUtf8()},
                        {"Notes", notes[i].ToUtf8()},
                        {"Extras", extras[i].ToUtf8()}});
    }
    return PrintReaderJson({{"Path", NativePathText(path)}, {"rows", rows}});
}

const bool registered = RegisterInspectView({
    "bom",
    "The BOM table of a secondary drawing: its rows as QxGetDwgBomRows reads them",
    DrawingViewSetup(showBom),
});

} // namespace
