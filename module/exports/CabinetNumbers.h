// Finding a device of a project tree by one of its cabinet numbers.
#pragma once

#include "project/ProjectTree.h"

// The m_strID of the first device in m_arrCabinets whose m_strCirNo, with "，" read as ",", holds the
// number as one of its comma-separated items, compared exactly; empty when none does.
CString FindCabinetId(const HMProjectTree_INFO& root, const CString& cabinetNumber);
