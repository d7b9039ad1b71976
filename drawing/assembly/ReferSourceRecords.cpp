// The cabinet groups of a primary diagram.
#include "drawing/assembly/ReferSourceRecords.h"

CDrawerInfo::~CDrawerInfo() {
    for (CReferSourcePartBomInfo* part : m_arrParts) delete part;
    QxFreeBomOfDwgs(m_arrDwgBoms);
}

CReferSourceGroupInfo::~CReferSourceGroupInfo() {
    for (CDrawerInfo* drawer : m_arrDrawers) delete drawer;
}

void QxFreeReferGroups(CReferSourceGroupArray& groups) {
    for (CReferSourceGroupInfo* group : groups) delete group;
    groups.RemoveAll();
}
