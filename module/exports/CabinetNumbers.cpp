// Finding a device by one of its cabinet numbers.
#include "module/exports/CabinetNumbers.h"

#include "support/TextHelpers.h"

CString FindCabinetId(const HMProjectTree_INFO& root, const CString& cabinetNumber) {
    for (const HMProjectTree_INFO* device : root.m_arrCabinets) {
        CString numbers = device->m_strCirNo;
        numbers.Replace(u"\uFF0C", u",");
        CStringArray items;
        SplitString(numbers, u",", items);  // without a comma: the one item
        for (const CString& item : items)
            if (item == cabinetNumber) return device->m_strID;
    }
    return CString();
}
