// qxinspect title FILE: the drawing number and name from the drawing's title block, and whether a title
// block was accepted.
#include "ReaderViewSupport.h"
#include "Views.h"
#include "drawing/title/TitleBlock.h"

namespace {

int showTitle(const std::string& file) {
    const QxDwgDatabase drawing(DrawingArgumentPath(file), 1);
    if (!drawing) return ComplainUnreadable(file);
    CString number;
    CString name;
    const bool accepted = QxGetDwgTitle(drawing.get(), number, name);
    return PrintReaderJson({{"accepted", accepted}, {"number", number.ToUtf8()}, {"name", name.ToUtf8()}});
}

const bool registered = RegisterInspectView({
    "title",
    "The drawing number and name that the title block gives (QxGetDwgTitle)",
    DrawingViewSetup(showTitle),
});

} // namespace
