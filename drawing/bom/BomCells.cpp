// Reading the cells of a BOM table.
#include "drawing/bom/BomCells.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/bom/MTextCleaner.h"
#include "support/XDataHelpers.h"

bool QxGetTextOfObject(AcDbObjectId id, CString& text) {
    text.Empty();
    AcDbObjectPointer<AcDbEntity> entity(id, AcDb::kForRead);
    if (!entity) return false;
    if (const AcDbText* single = QxAsText(entity.get())) {
        text = single->textStringConst();
        return true;
    }
    if (const AcDbMText* mtext = QxAsMText(entity.get())) {
        text = QxCleanMText(mtext->contents());
        return true;
    }
    return false;
}

CString GetLinkedMText(AcDbDatabase* database, CString name, CString handle, CString application) {
    AcDbObjectId id;
    if (!QxHandleToId(database, handle, id)) return {};
    AcDbMText* mtext = QxOpenMText(id, AcDb::kForRead);
    if (mtext == nullptr) return {};
    CString text;
    if (!application.IsEmpty()) {
        const ResbufPtr chain(mtext->xData(application.c_str()));
        for (const resbuf* item = chain.get(); item != nullptr; item = item->rbnext) {
            if (item->restype != 1005 || item->resval.rstring == nullptr) continue;
            if (!name.EqualsNoCase(item->resval.rstring)) continue;
            text = QxCleanMText(mtext->contents());
            break;
        }
    }
    mtext->close();
    return text;
}

bool QxIsBomLink(const CString& handle) {
    return !handle.IsEmpty() && !handle.EqualsNoCase(u"0");
}

CString QxFollowBomLink(AcDbDatabase* database, const AcDbEntity& anchor, const CString& anchorHandle,
                        const char16_t* forwardKey, const char16_t* backKey, CString* target) {
    CString handle;
    GetXDataValue(&anchor, forwardKey, 1005, handle);
    if (target != nullptr) *target = handle;
    if (!QxIsBomLink(handle)) return {};
    CString text = GetLinkedMText(database, anchorHandle, handle, backKey);
    if (text == u" ") text.Empty();
    return text;
}
