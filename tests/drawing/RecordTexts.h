// The records the readers fill, each written out as one line of text, so that a test compares a whole
// record at once and a failure shows every field side by side.
#pragma once

#include "drawing/assembly/ReferSourceRecords.h"
#include "drawing/parts/PartRecords.h"
#include "drawing/primary/Cir1Attrubute.h"

#include <string>
#include <vector>

inline CString Joined(const CStringArray& items, const char16_t* separator = u",") {
    CString text;
    for (int i = 0; i < items.GetSize(); ++i) text += (i ? CString(separator) : CString()) + items[i];
    return text;
}

// No|GroupCode|Use|Type|Cir1Voltage|Cir2Voltage|MuXianType|TankCirNo|CabinetOrder|RatedCurrent|CarAssembly1|
// CarAssembly2|CabinetAssembly|CircuitName|CircuitPower|SecondaryDrawings|DwgPaths|DwgFlags|Handles
inline CString RecordText(const CCir1Attrubute& c) {
    CString flags;
    for (int i = 0; i < c.DwgFlags.GetSize(); ++i) flags += CString(std::to_string(c.DwgFlags[i]));
    return c.No + u"|" + c.GroupCode + u"|" + c.Use + u"|" + c.Type + u"|" + c.Cir1Voltage + u"|" + c.Cir2Voltage +
           u"|" + c.MuXianType + u"|" + c.TankCirNo + u"|" + c.CabinetOrder + u"|" + c.RatedCurrent + u"|" +
           c.CarAssembly1 + u"|" + c.CarAssembly2 + u"|" + c.CabinetAssembly + u"|" + c.CircuitName + u"|" +
           c.CircuitPower + u"|" + c.SecondaryDrawings + u"|" + Joined(c.DwgPaths) + u"|" + flags + u"|" +
           Joined(c.Handles);
}

inline std::vector<CString> RecordTexts(const CCir1AttrubuteArray& circuits) {
    std::vector<CString> texts;
    for (const CCir1Attrubute* c : circuits) texts.push_back(RecordText(*c));
    return texts;
}

// type/code/name/count; for each part.
inline CString PartsText(const CReferSourcePartArray& parts) {
    CString text;
    for (const CReferSourcePartBomInfo* part : parts)
        text += part->m_strType + u"/" + part->m_strCode + u"/" + part->m_strName + u"/" + part->m_strCount + u";";
    return text;
}

// Name|Use|Type|parts|Drawing|TitleNo|TitleName|each BOM read as [labels counts extras], and the number of
// drawers.
inline CString RecordText(const CDrawerInfo& d) {
    CString boms;
    for (const CBomOfDwg* bom : d.m_arrDwgBoms)
        boms += u"[" + Joined(bom->Labels) + u" " + Joined(bom->Counts) + u" " +
                CString(std::to_string(bom->Extras.GetSize())) + u"]";
    CString text = d.m_strName + u"|" + d.m_strUse + u"|" + d.m_strType + u"|" + PartsText(d.m_arrParts) + u"|" +
                   d.m_strDrawing + u"|" + d.m_strTitleNo + u"|" + d.m_strTitleName + u"|" + boms;
    if (const auto* group = dynamic_cast<const CReferSourceGroupInfo*>(&d))
        text += u"|drawers " + CString(std::to_string(group->m_arrDrawers.GetSize()));
    return text;
}

// Label|Location|MergedLabels|SeqNo|BoardNo|ElementOrderNo|WireStampBlock, the rows' count.
inline CString RecordText(const CPartBomDataBase& p) {
    return p.Label + u"|" + p.Location + u"|" + p.MergedLabels.get() + u"|" + p.SeqNo + u"|" + p.BoardNo + u"|" +
           p.ElementOrderNo + u"|" + p.WireStampBlock + u"|rows " + CString(std::to_string(p.PartBoms.GetSize()));
}

// No|Type|Code|Name|Count|Price|DeviceType|Note|Label|Path|PathFlag|DwgLocation, then each component as
// name/type/code/count.
inline CString RecordText(const COnePartBom& r) {
    CString text = r.No + u"|" + r.Type + u"|" + r.Code + u"|" + r.Name + u"|" + r.Count + u"|" + r.Price + u"|" +
                   r.DeviceType + u"|" + r.Note + u"|" + r.Label + u"|" + r.Path + u"|" +
                   CString(std::to_string(r.PathFlag)) + u"|" + r.DwgLocation;
    for (const COneComponent* c : r.Components)
        text += u"|" + c->Name + u"/" + c->Type + u"/" + c->Code + u"/" + c->Count;
    return text;
}
