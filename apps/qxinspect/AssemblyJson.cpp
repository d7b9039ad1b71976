// The JSON forms of the assembly views.
#include "AssemblyJson.h"

#include "support/FileSystem.h"
#include "support/TextHelpers.h"

#include <iostream>

namespace assemblyjson {

namespace {

std::string nativeOne(const CString& logicPath) {
    if (const auto resolved = QxFs::Resolve(logicPath)) return *resolved;
    if (const auto target = QxFs::NativeTarget(logicPath)) return *target;
    return logicPath.ToUtf8();
}

json bomOfDwg(const CBomOfDwg& rows) {
    return {{"Path", NativePath(rows.Path)}, {"Names", Strings(rows.Names)},   {"Types", Strings(rows.Types)},
            {"Counts", Strings(rows.Counts)}, {"Codes", Strings(rows.Codes)},   {"Prices", Strings(rows.Prices)},
            {"Kinds", Strings(rows.Kinds)},   {"Labels", Strings(rows.Labels)}, {"Notes", Strings(rows.Notes)}};
}

json drawerFields(const CDrawerInfo& source) {
    json parts = json::array();
    for (const CReferSourcePartBomInfo* part : source.m_arrParts)
        parts.push_back({{"m_strType", part->m_strType.ToUtf8()},
                         {"m_strCode", part->m_strCode.ToUtf8()},
                         {"m_strName", part->m_strName.ToUtf8()},
                         {"m_strCount", part->m_strCount.ToUtf8()}});
    json boms = json::array();
    for (const CBomOfDwg* rows : source.m_arrDwgBoms) boms.push_back(bomOfDwg(*rows));
    return {{"m_strName", source.m_strName.ToUtf8()},
            {"m_strUse", source.m_strUse.ToUtf8()},
            {"m_strType", source.m_strType.ToUtf8()},
            {"m_arrParts", parts},
            {"m_strDrawing", NativePath(source.m_strDrawing)},
            {"m_strTitleNo", source.m_strTitleNo.ToUtf8()},
            {"m_strTitleName", source.m_strTitleName.ToUtf8()},
            {"m_arrDwgBoms", boms}};
}

json component(const COneComponent& item) {
    return {{"Name", item.Name.ToUtf8()}, {"Type", item.Type.ToUtf8()}, {"Code", item.Code.ToUtf8()},
            {"Count", item.Count.ToUtf8()}};
}

json partBom(const COnePartBom& row) {
    json components = json::array();
    for (const COneComponent* item : row.Components) components.push_back(component(*item));
    return {{"Price", row.Price.ToUtf8()},   {"Name", row.Name.ToUtf8()},
            {"Type", row.Type.ToUtf8()},     {"Code", row.Code.ToUtf8()},
            {"Note", row.Note.ToUtf8()},     {"No", row.No.ToUtf8()},
            {"Path", NativePath(row.Path)},  {"PathFlag", row.PathFlag},
            {"DwgLocation", row.DwgLocation.ToUtf8()}, {"Handle", row.Handle.ToUtf8()},
            {"Label", row.Label.ToUtf8()},   {"Count", row.Count.ToUtf8()},
            {"DeviceType", row.DeviceType.ToUtf8()}, {"Components", components}};
}

} // namespace

std::string NativePath(const CString& logicPath) {
    if (logicPath.IsEmpty()) return {};
    CStringArray pieces;
    SplitString(logicPath, u"|", pieces);
    std::string text;
    for (int i = 0; i < pieces.GetSize(); ++i) text += (i > 0 ? "|" : "") + nativeOne(pieces[i]);
    return text;
}

json Strings(const CStringArray& strings) {
    json out = json::array();
    for (const CString& text : strings) out.push_back(text.ToUtf8());
    return out;
}

json Group(const CReferSourceGroupInfo& group) {
    json out = drawerFields(group);
    json drawers = json::array();
    for (const CDrawerInfo* drawer : group.m_arrDrawers) drawers.push_back(drawerFields(*drawer));
    out["m_arrDrawers"] = drawers;
    return out;
}

json PartRecord(const CPartBomDataBase& record) {
    json rows = json::array();
    for (const COnePartBom* row : record.PartBoms) rows.push_back(partBom(*row));
    return {{"Location", record.Location.ToUtf8()},
            {"Label", record.Label.ToUtf8()},
            {"MergedLabels", record.MergedLabels.get().ToUtf8()},
            {"ElementDesc", record.ElementDesc.ToUtf8()},
            {"PartBoms", rows},
            {"SeqNo", record.SeqNo.ToUtf8()},
            {"BoardNo", record.BoardNo.ToUtf8()},
            {"BoardName", record.BoardName.ToUtf8()},
            {"BoardSide", record.BoardSide.ToUtf8()},
            {"RowSplit", record.RowSplit.ToUtf8()},
            {"WirePathNo", record.WirePathNo.ToUtf8()},
            {"WireStampBlock", record.WireStampBlock.ToUtf8()},
            {"WireStampAngle", record.WireStampAngle.ToUtf8()},
            {"LayoutScale", record.LayoutScale.ToUtf8()},
            {"ElementOrderNo", record.ElementOrderNo.ToUtf8()},
            {"ElementClass", record.ElementClass.ToUtf8()},
            {"ElementLabelDistance", record.ElementLabelDistance.ToUtf8()},
            {"CabinetDrawingBlock", record.CabinetDrawingBlock.ToUtf8()},
            {"BreakerDrawingBlock", record.BreakerDrawingBlock.ToUtf8()}};
}

void Print(const json& document) {
    std::cout << document.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
}

} // namespace assemblyjson
