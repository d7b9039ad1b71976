// qxinspect head FILE: the head table of a primary diagram, the nine results of QxReadSysHead under the
// names of its parameters; each id as its object's handle, null for none.
#include "ReaderViewSupport.h"
#include "Views.h"
#include "drawing/primary/SysHead.h"

namespace {

ReaderJson handleJson(const AcDbObjectId& id) {
    if (id.isNull()) return nullptr;
    return id.handle().text().ToUtf8();
}

int showHead(const std::string& file) {
    const QxDwgDatabase drawing(DrawingArgumentPath(file), 1);
    if (!drawing) return ComplainUnreadable(file);
    bool found1 = false, foundBus = false, found2 = false;
    CString text1, textBus, text2;
    AcDbObjectId id1, id2, idBus;
    QxReadSysHead(drawing.get(), found1, foundBus, found2, text1, textBus, text2, id1, id2, idBus);
    return PrintReaderJson({{"found1", found1},
                            {"foundBus", foundBus},
                            {"found2", found2},
                            {"text1", text1.ToUtf8()},
                            {"textBus", textBus.ToUtf8()},
                            {"text2", text2.ToUtf8()},
                            {"id1", handleJson(id1)},
                            {"id2", handleJson(id2)},
                            {"idBus", handleJson(idBus)}});
}

const bool registered = RegisterInspectView({
    "head",
    "The head table of a primary diagram: rated voltages and busbar (QxReadSysHead)",
    DrawingViewSetup(showHead),
});

} // namespace
