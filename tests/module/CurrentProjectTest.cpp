// How the commands split the current project's path, and how the exports find a device by cabinet number.
#include "module/commands/CurrentProject.h"
#include "module/exports/CabinetNumbers.h"

#include <gtest/gtest.h>

TEST(CurrentProjectPath, SplitsIntoFolderNameAndDocument) {
    const CurrentProject project = ResolveProjectFile(u"D:\\工程\\变电站\\变电站.itm");
    EXPECT_EQ(project.m_strFolder, CString(u"D:\\工程\\变电站\\"));
    EXPECT_EQ(project.m_strName, CString(u"变电站"));
    EXPECT_EQ(project.m_strDocument, CString(u"D:\\工程\\变电站\\Hexmoor.xml"));

    const CurrentProject bare = ResolveProjectFile(u"P.itm");
    EXPECT_EQ(bare.m_strFolder, CString(u"\\"));
    EXPECT_EQ(bare.m_strName, CString(u"P"));

    // A name shorter than its extension, and no project at all: nothing that could name a document.
    EXPECT_EQ(ResolveProjectFile(u"a\\b").m_strName, CString());
    const CurrentProject none = ResolveProjectFile(u"");
    EXPECT_EQ(none.m_strFolder, CString(u"\\"));
    EXPECT_FALSE(none.HasDocument());
}

namespace {

HMProjectTree_INFO* addDevice(HMProjectTree_INFO& root, const CString& id, const CString& cirNo) {
    auto* device = new HMProjectTree_INFO;
    device->m_strID = id;
    device->m_strType = u"0";
    device->m_strCirNo = cirNo;
    device->m_pRoot = device->m_pParent = &root;
    root.m_arrChildren.Add(device);
    root.m_arrCabinets.Add(device);
    return device;
}

} // namespace

TEST(CabinetNumbers, AnyItemOfEitherCommaFindsTheFirstDeviceExactly) {
    HMProjectTree_INFO root;
    addDevice(root, u"a", u"K01，K02");
    addDevice(root, u"b", u"K02,K03");
    addDevice(root, u"c", u"K04,,K05");
    EXPECT_EQ(FindCabinetId(root, u"K02"), CString(u"a"));
    EXPECT_EQ(FindCabinetId(root, u"K03"), CString(u"b"));
    EXPECT_EQ(FindCabinetId(root, u"K05"), CString(u"c"));
    EXPECT_EQ(FindCabinetId(root, u"k01"), CString());
    EXPECT_EQ(FindCabinetId(root, u"K01，K02"), CString());  // the whole text is no item
    EXPECT_EQ(FindCabinetId(root, u"K0"), CString());
}
