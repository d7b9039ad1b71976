// Reading the head table of a primary diagram.
#include "drawing/primary/SysHead.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/walk/EntityWalk.h"
#include "support/XDataHelpers.h"

namespace {

struct HeadItem {
    const char16_t* label;
    bool& found;
    CString& text;
    AcDbObjectId& id;
};

} // namespace

bool QxReadSysHead(AcDbDatabase* database, bool& found1, bool& foundBus, bool& found2, CString& text1,
                   CString& textBus, CString& text2, AcDbObjectId& id1, AcDbObjectId& id2, AcDbObjectId& idBus) {
    found1 = foundBus = found2 = false;
    text1.Empty();
    textBus.Empty();
    text2.Empty();
    id1 = id2 = idBus = AcDbObjectId::kNull;
    if (database == nullptr) return false;

    // The order of comparison: the first label that matches decides.
    const HeadItem items[] = {
        {u"一次额定电压", found1, text1, id1},
        {u"二次额定电压", found2, text2, id2},
        {u"母线规格", foundBus, textBus, idBus},
    };
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        const AcDbText* text = QxAsText(&entity);
        if (text == nullptr || !HasXData(text, QX_SYS_HEAD_ITEMNAME)) return WalkStep::Continue;
        CString content = text->textStringConst();
        content.Remove(u' ');
        for (const HeadItem& item : items) {
            if (!content.StartsWith(item.label)) continue;
            CString value = content.Mid(CString(item.label).GetLength());
            value.Remove(u':');
            item.found = true;
            item.text = value;
            item.id = text->objectId();
            break;
        }
        return WalkStep::Continue;
    });
    return true;
}
