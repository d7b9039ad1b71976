// Checking that cabinets which must be identical are.
#include "drawing/merge/CabinetCheck.h"

#include "drawing/ExtractionState.h"
#include "platform/host/HostOutput.h"

namespace {

enum CabinetDifference { kSame, kPartCount, kPartContent, kDrawing, kDrawerCount };

const char16_t* messageOf(CabinetDifference difference) {
    switch (difference) {
    case kPartCount:
        return u"屏柜 %s 和屏柜 %s 内容应该一致，但是现在不一致，一次元件条目数量不同，请检查一次系统图。";
    case kPartContent:
        return u"屏柜 %s 和屏柜 %s 内容应该一致，但是现在不一致，一次元件内容不一样，请检查一次系统图。";
    case kDrawing:
        return u"屏柜 %s 和屏柜 %s 内容应该一致，但是现在不一致，关联二次明细文件不同，请检查一次系统图。";
    case kDrawerCount:
        return u"屏柜 %s 和屏柜 %s 内容应该一致，但是现在不一致，抽屉数量不同，请检查一次系统图。";
    case kSame: break;
    }
    return u"";
}

bool samePart(const CReferSourcePartBomInfo& a, const CReferSourcePartBomInfo& b) {
    return a.m_strType == b.m_strType && a.m_strName == b.m_strName && a.m_strCount == b.m_strCount;
}

// Part by part as far as the first list goes; a second list that runs out first differs.
bool samePartsByIndex(const CReferSourcePartArray& a, const CReferSourcePartArray& b) {
    for (int i = 0; i < a.GetSize(); ++i)
        if (i >= b.GetSize() || !samePart(*a[i], *b[i])) return false;
    return true;
}

bool sameDrawing(const CDrawerInfo& a, const CDrawerInfo& b) {
    return a.m_strTitleNo == b.m_strTitleNo && a.m_strTitleName == b.m_strTitleName &&
           a.m_strDrawing == b.m_strDrawing;
}

CabinetDifference compareCabinets(const CReferSourceGroupInfo& a, const CReferSourceGroupInfo& b) {
    if (a.m_arrParts.GetSize() != b.m_arrParts.GetSize()) return kPartCount;
    if (!samePartsByIndex(a.m_arrParts, b.m_arrParts)) return kPartContent;
    if (!sameDrawing(a, b)) return kDrawing;
    if (a.m_arrDrawers.GetSize() != b.m_arrDrawers.GetSize()) return kDrawerCount;
    for (int d = 0; d < a.m_arrDrawers.GetSize(); ++d) {
        if (!samePartsByIndex(a.m_arrDrawers[d]->m_arrParts, b.m_arrDrawers[d]->m_arrParts)) return kPartContent;
        if (!sameDrawing(*a.m_arrDrawers[d], *b.m_arrDrawers[d])) return kDrawing;
    }
    return kSame;
}

} // namespace

bool QxCheckCabinetsEqual(int first, int second) {
    // Indexes that name no group compare nothing.
    const int count = g_arrReferGroups.GetSize();
    if (first < 0 || second < 0 || first >= count || second >= count) return true;
    const CReferSourceGroupInfo& a = *g_arrReferGroups[first];
    const CReferSourceGroupInfo& b = *g_arrReferGroups[second];
    const CabinetDifference difference = compareCabinets(a, b);
    if (difference == kSame) return true;
    MessageBoxW(nullptr, QxFormat(messageOf(difference), a.m_strName, b.m_strName), u"Corvane", MB_ICONINFORMATION);
    g_bBomCheckFailed = true;
    return false;
}
