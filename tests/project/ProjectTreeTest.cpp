#include "project/ProjectTree.h"

#include <gtest/gtest.h>

#include <string>

namespace {

HMProjectTree_INFO* addNode(HMProjectTree_INFO& root, HMProjectTree_INFO* parent, const char16_t* name, const char16_t* type) {
    auto* node = new HMProjectTree_INFO;
    node->m_strName = name;
    node->m_strType = type;
    node->m_pRoot = &root;
    node->m_pParent = parent;
    parent->m_arrChildren.Add(node);
    if (HMIsDeviceType(type)) root.m_arrCabinets.Add(node);
    return node;
}

} // namespace

TEST(ProjectTree, DeletingASubProjectRemovesItsDevicesFromTheRootList) {
    HMProjectTree_INFO root;
    HMProjectTree_INFO* top = addNode(root, &root, u"K00", u"0");
    HMProjectTree_INFO* sub = addNode(root, &root, u"sub", u"100");
    addNode(root, sub, u"K01", u"0");
    HMProjectTree_INFO* subsub = addNode(root, sub, u"deeper", u"100");
    addNode(root, subsub, u"K02", u"device");
    ASSERT_EQ(root.m_arrCabinets.GetSize(), 3);

    root.m_arrChildren.RemoveAt(1);
    delete sub;

    ASSERT_EQ(root.m_arrCabinets.GetSize(), 1);
    EXPECT_EQ(root.m_arrCabinets[0], top);
}
