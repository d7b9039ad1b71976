// Reading title blocks.
#include "drawing/title/TitleBlock.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/bom/MTextCleaner.h"
#include "drawing/title/TitleCellTable.h"
#include "drawing/walk/EntityWalk.h"
#include "support/XDataHelpers.h"

#include <array>

namespace {

constexpr std::array<const char16_t*, 5> kNumberCaptions = {u"图号", u"图纸编号", u"图纸代号", u"图样编号", u"图样代号"};
constexpr std::array<const char16_t*, 5> kNameCaptions = {u"图名", u"图纸名称", u"图样名称", u"图纸类型", u"图纸内容"};

bool hasAnyXData(const AcDbEntity* entity, std::initializer_list<const char16_t*> applications) {
    for (const char16_t* application : applications)
        if (HasXData(entity, application)) return true;
    return false;
}

const TitleCell* firstCellCaptioned(const TitleCellTable& table, const std::array<const char16_t*, 5>& captions) {
    for (const TitleCell& cell : table.Cells) {
        CString caption = cell.Name;
        caption.Remove(u' ');
        for (const char16_t* wanted : captions)
            if (caption.Contains(wanted)) return &cell;
    }
    return nullptr;
}

bool strictlyInside(const AcGePoint3d& p, const TitleCell& cell) {
    return cell.X1 < p.x && p.x < cell.X2 && cell.Y2 < p.y && p.y < cell.Y1;
}

// The first text or MText of model space whose insertion point lies strictly inside the cell.
CString searchRectangle(AcDbDatabase* database, const TitleCell& cell) {
    CString found;
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        if (const AcDbText* text = QxAsText(&entity); text != nullptr && strictlyInside(text->position(), cell)) {
            found = text->textStringConst();
            return WalkStep::Stop;
        }
        if (const AcDbMText* mtext = QxAsMText(&entity); mtext != nullptr && strictlyInside(mtext->location(), cell)) {
            found = QxCleanMText(mtext->contents());
            return WalkStep::Stop;
        }
        return WalkStep::Continue;
    });
    return found;
}

} // namespace

bool QxReadTitleBlock(AcDbDatabase* database, AcDbBlockReference* reference, CString& number, CString& name) {
    number.Empty();
    name.Empty();
    if (database == nullptr || reference == nullptr) return false;
    if (!hasAnyXData(reference, {HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE}))
        return false;
    resbuf* chain = nullptr;
    if (!QxGetXRecordChain(reference, CORVANE_TITLE, chain)) return false;
    const ResbufPtr owned(chain);
    // The table's items are taken as text whatever their result types.
    CStringArray items;
    for (const ResItem& item : FromRbChain(chain)) items.Add(item.asText());
    const TitleCellTable table = ParseTitleCellTable(items, reference->position());
    if (table.Cells.IsEmpty()) return false;

    if (const TitleCell* cell = firstCellCaptioned(table, kNumberCaptions)) number = searchRectangle(database, *cell);
    if (const TitleCell* cell = firstCellCaptioned(table, kNameCaptions)) name = searchRectangle(database, *cell);
    return true;
}

bool QxGetDwgTitle(AcDbDatabase* database, CString& number, CString& name) {
    number.Empty();
    name.Empty();
    if (database == nullptr) return false;
    bool accepted = false;
    QxWalkModelSpace(database, [&](AcDbEntity& entity) {
        AcDbBlockReference* reference = QxAsBlockReference(&entity);
        if (reference == nullptr) return WalkStep::Continue;
        if (!hasAnyXData(reference, {HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE,
                                     HORBEGIN_OF_TABLE}))
            return WalkStep::Continue;
        QxReadTitleBlock(database, reference, number, name);
        // A wiring drawing's title block is passed over, unless it is the primary wiring diagram.
        if (!name.Contains(u"一次") && name.Contains(u"接线")) return WalkStep::Continue;
        accepted = true;
        return WalkStep::Stop;
    });
    return accepted;
}

bool QxIsTitleBlock(AcDbEntity* entity) {
    for (const char16_t* application : {u"X1", HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE})
        if (!HasXData(entity, application)) return false;
    return true;
}
