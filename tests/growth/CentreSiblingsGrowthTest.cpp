// A project level with very many devices: the check that sibling names differ ignoring case once compared
// every pair.
#include "centre/operations/CentreError.h"
#include "centre/operations/TreeChecks.h"

#include <gtest/gtest.h>
#include <string>

TEST(CentreSiblingsGrowth, AVeryWideLevelIsCheckedAndItsLastClashFound) {
    constexpr int kDevices = 300000;
    HMProjectTree_INFO root;
    root.m_strName = u"wide";
    for (int i = 0; i < kDevices; ++i) {
        auto* device = new HMProjectTree_INFO;
        device->m_strName = CString(u"Cabinet-") + CString(std::to_string(i));
        device->m_strType = u"0";
        device->m_pParent = &root;
        root.m_arrChildren.Add(device);
    }
    EXPECT_NO_THROW(CheckNewProjectTree(root));
    root.m_arrChildren[kDevices - 1]->m_strName = u"CABINET-0";
    EXPECT_THROW(CheckNewProjectTree(root), CCentreError);
}
