// The records a project is held in while it passes between local files and the cloud: one node of a
// project tree, and one BOM row. The field order is that of the cloud library's records.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

struct QX_API BOM_INFO {
    CString m_strRowLabel;
    CString m_strRowName;
    CString m_strRowModel;
    CString m_strRowCount;
    CString m_strRowRemark;
    CString m_strRowCode;

    friend bool operator==(const BOM_INFO&, const BOM_INFO&) = default;
};

using BomRows = CArray<BOM_INFO, BOM_INFO&>;

class QX_API HMProjectTree_INFO {
public:
    HMProjectTree_INFO() = default;
    // Deletes the children; a device removed with a sub-tree also leaves the root's m_arrCabinets.
    ~HMProjectTree_INFO();
    HMProjectTree_INFO(const HMProjectTree_INFO&) = delete;
    HMProjectTree_INFO& operator=(const HMProjectTree_INFO&) = delete;

    CString m_strID;
    CString m_strName;
    CString m_strType;
    CString m_strPath;
    CString m_strDataSchema;
    CArray<HMProjectTree_INFO*, HMProjectTree_INFO*> m_arrChildren;  // owned
    bool m_bChanged = false;
    CString m_strCirNo;
    CString m_strCirName;
    CString m_strCirType;
    CString m_strCirSize;
    CString m_strBoms;
    int m_nCabCount = 1;
    BomRows m_arrPrimaryBom;
    BomRows m_arrSecondaryBom;
    HMProjectTree_INFO* m_pRoot = nullptr;
    HMProjectTree_INFO* m_pParent = nullptr;
    CArray<HMProjectTree_INFO*, HMProjectTree_INFO*> m_arrCabinets;  // on the root: every device, not owned
};

// The two tests of a node's kind. The document format, the records and the write-back walk call a node a
// device when its type is neither empty nor "100"; the create and update walks and the tree builders call
// every child a device whose type is not "100", so that a child with an empty type counts as a device there.
QX_API bool HMIsDeviceType(const CString& type);
QX_API bool HMIsNotSubProjectType(const CString& type);
