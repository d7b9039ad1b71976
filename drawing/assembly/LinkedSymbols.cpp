// Finding the references of a master symbol.
#include "drawing/assembly/LinkedSymbols.h"

#include "drawing/access/QxDwgObjects.h"

namespace {

// The non-empty 1005 items of the object's xdata `key`; false when the object does not open.
bool linksOf(AcDbDatabase* database, const CString& handle, const CString& key, CStringArray& links) {
    AcDbObjectId id;
    if (!QxHandleToId(database, handle, id)) return false;
    AcDbObjectPointer<AcDbObject> object(id, AcDb::kForRead);
    if (!object) return false;
    const ResbufPtr chain(object->xData(key.c_str()));
    for (const resbuf* item = chain.get(); item != nullptr; item = item->rbnext)
        if (item->restype == 1005 && item->resval.rstring != nullptr && item->resval.rstring[0] != u'\0')
            links.Add(item->resval.rstring);
    return true;
}

} // namespace

void QxGetLinkedSymbols(AcDbDatabase* database, CString master, CString key, CStringArray& handles) {
    handles.RemoveAll();
    if (database == nullptr || key.IsEmpty()) return;
    CStringArray candidates;
    if (!linksOf(database, master, key, candidates)) return;
    for (const CString& candidate : candidates) {
        CStringArray back;
        if (!linksOf(database, candidate, key, back)) continue;
        for (const CString& link : back) {
            if (!link.EqualsNoCase(master)) continue;
            handles.Add(candidate);
            break;
        }
    }
}
