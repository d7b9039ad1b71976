// How the commands split the current project's path, and how the exports find a device by cabinet number.
#include "module/commands/CurrentProject.h"
#include "module/exports/CabinetNumbers.h"

#include <gtest/gtest.h>

namespace {

// A resolved project as "folder|name|document".
CString parts(const CurrentProject& project) { return project.m_strFolder + u"|" + project.m_strName + u"|" + project.m_strDocument; }

} // namespace

TEST(CurrentProjectPath, SplitsIntoFolderNameAndDocument) {
    EXPECT_EQ(parts(ResolveProjectFile(u"D:\\工程\\变电站\\变电站.itm")), u"D:\\工程\\变电站\\|变电站|D:\\工程\\变电站\\Hexmoor.xml");
    EXPECT_EQ(parts(ResolveProjectFile(u"P.itm")), u"\\|P|\\Hexmoor.xml");
    // A name shorter than its extension, and no project at all: nothing that could name a document.
    EXPECT_EQ(ResolveProjectFile(u"a\\b").m_strName, CString());
    const CurrentProject none = ResolveProjectFile(u"");
    EXPECT_EQ(none.m_strFolder + u"|" + none.m_strName, u"\\|");
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
    // The whole text "K01，K02" is no item; neither is a prefix or another case.
    CString found;
    for (const char16_t* number : {u"K02", u"K03", u"K05", u"k01", u"K01，K02", u"K0"}) found += FindCabinetId(root, number) + u";";
    EXPECT_EQ(found, u"a;b;c;;;;");
}
