// Reading the drawing's location.
#include "drawing/parts/DwgLocation.h"

namespace {

AcDbObjectId entryOf(AcDbObjectId dictionaryId, const CString& name) {
    AcDbObjectPointer<AcDbDictionary> dictionary(dictionaryId, AcDb::kForRead);
    AcDbObjectId id;
    if (!dictionary || dictionary->getAt(name, id) != Acad::eOk) return {};
    return id;
}

} // namespace

void QxGetDwgLocation(AcDbDatabase* database, CString& location) {
    location.Empty();
    if (database == nullptr) return;
    const AcDbObjectId own = entryOf(database->namedObjectsDictionaryId(), QX_DWG_DICITIONARY);
    AcDbObjectPointer<AcDbXrecord> record(entryOf(own, QX_LOCATION_XRECORD), AcDb::kForRead);
    if (!record) return;
    const ResItems& items = record->items();
    for (size_t i = 0; i < items.size(); ++i) {
        CString caption = items[i].asText();
        caption.Remove(u' ');
        if (!caption.Contains(u"位置")) continue;
        if (i + 1 < items.size()) location = items[i + 1].asText();
        return;
    }
}
