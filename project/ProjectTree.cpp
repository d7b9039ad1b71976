// The project tree records.
#include "project/ProjectTree.h"

HMProjectTree_INFO::~HMProjectTree_INFO() {
    for (HMProjectTree_INFO* child : m_arrChildren) {
        if (!child) continue;
        if (m_pRoot && HMIsDeviceType(child->m_strType)) {
            auto& cabinets = m_pRoot->m_arrCabinets;
            const int at = cabinets.Find(child);
            if (at >= 0) cabinets.RemoveAt(at);
        }
        delete child;
    }
}

bool HMIsDeviceType(const CString& type) { return !type.IsEmpty() && type != u"100"; }

bool HMIsNotSubProjectType(const CString& type) { return type != u"100"; }
