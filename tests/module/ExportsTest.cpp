// The nine exports as a sibling module calls them: looked up by plain name in the built module, which runs
// its own session.
#include "ProjectCommandFixture.h"
#include "platform/host/ArxApp.h"
#include "platform/host/CommandStack.h"
#include "support/FileSystem.h"

#include <dlfcn.h>
#include <optional>

namespace {

using Rows = BomRows;

// The built module, loaded and started as the host does, and its exports.
class SiblingView {
    void* m_handle = ::dlopen((std::string(QX_BINARY_DIR) + "/lib/libQxHMInterFace.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    template <typename Function>
    Function find(const char* name) {
        return m_handle ? reinterpret_cast<Function>(::dlsym(m_handle, name)) : nullptr;
    }

public:
    SiblingView() {
        if (entry) entry(AcRx::kInitAppMsg, nullptr);
    }
    ~SiblingView() {
        if (entry) entry(AcRx::kUnloadAppMsg, nullptr);
        if (m_handle) ::dlclose(m_handle);
    }
    SiblingView(const SiblingView&) = delete;
    SiblingView& operator=(const SiblingView&) = delete;

    bool complete() const {
        return entry && login && remote && freeTree && projectInfo && bomSubmit && sys1Refer && oneCabCir2 && dqBoms && hmBoms;
    }

    AcRxEntryPointFn entry = find<AcRxEntryPointFn>("acrxEntryPoint");
    bool (*login)() = find<bool (*)()>("QxLoginCloudServer");
    HMProjectTree_INFO* (*remote)() = find<HMProjectTree_INFO* (*)()>("QxGetHMProjectRemote");
    void (*freeTree)(HMProjectTree_INFO*) = find<void (*)(HMProjectTree_INFO*)>("QxFreeTreeInfo");
    bool (*projectInfo)(HMProjectTree_INFO*, CString) = find<bool (*)(HMProjectTree_INFO*, CString)>("QxGetHMProjectInfo");
    bool (*bomSubmit)(HMProjectTree_INFO*) = find<bool (*)(HMProjectTree_INFO*)>("QxHMBomSubmit");
    bool (*sys1Refer)(HMProjectTree_INFO*) = find<bool (*)(HMProjectTree_INFO*)>("QxSys1Refer");
    bool (*oneCabCir2)(HMProjectTree_INFO*) = find<bool (*)(HMProjectTree_INFO*)>("QxsubmitOneCabCir2");
    bool (*dqBoms)(Rows&) = find<bool (*)(Rows&)>("QxGetDqBomsArray");
    bool (*hmBoms)(Rows&, CString, CString, CString) = find<bool (*)(Rows&, CString, CString, CString)>("QxGetHMBomsArray");
};

const char16_t* const kCabinetBlock =
    u"<cabinet ID=\"c1\"><product F_Numbers=\"2\" F_Name=\"断路器\" F_Remark=\"\" F_Model=\"NSX100\" "
    u"F_Parent_BOM_ID=\"\" F_IsSecondary=\"0\"/><product F_Numbers=\"1\" F_Name=\"继电器\" F_Remark=\"\" "
    u"F_Model=\"RX-1\" F_Parent_BOM_ID=\"12345678\" F_IsSecondary=\"1\"/><product F_Numbers=\"9\" F_Name=\"child\" "
    u"F_Remark=\"\" F_Model=\"m\" F_Parent_BOM_ID=\"123456789\" F_IsSecondary=\"1\"/></cabinet>";

// Station with K-1 (cabinets "K01，K02") and K-3 (cabinet K03), each carrying the same BOM block.
HMProjectTree_INFO* stationWithRows(HMProjectTree_INFO*) {
    HMProjectTree_INFO* root = CloudNode(nullptr, u"Station", u"");
    root->m_strID = u"P-7";
    CloudNode(root, u"K-1", u"0", u"K01，K02")->m_strBoms = kCabinetBlock;
    CloudNode(root, u"K-3", u"0", u"K03")->m_strBoms = kCabinetBlock;
    return root;
}

} // namespace

class Exports : public ProjectCommandTest {
protected:
    void SetUp() override {
        ProjectCommandTest::SetUp();
        HMEndSession();  // the built module runs the session here, not the test's own copy
        module.emplace();
        ASSERT_TRUE(module->complete()) << ::dlerror();
    }
    void TearDown() override {
        module.reset();
        ProjectCommandTest::TearDown();
    }

    // The cloud's import queries as "project-id/cabinet-id;".
    std::string queries() {
        CString text;
        for (const auto& query : cloud().importQueries) text += query.projectId + u"/" + query.cabinetId + u";";
        return text.ToUtf8();
    }

    std::optional<SiblingView> module;
};

TEST_F(Exports, AllNineAreThereAndEveryCloudEntryLogsInFirst) {
    cloud().loginResult = 0;  // the person cancels the login
    HMProjectTree_INFO tree;
    Rows rows;
    EXPECT_FALSE(module->projectInfo(nullptr, u""));
    EXPECT_EQ(cloud().loginCalls, 0);  // a null tree is refused before the login

    // Each entry's answer in the order of the list, '1' for a success or a tree: all must fail.
    std::string answers;
    for (const bool answer : {module->login(), module->remote() != nullptr, module->projectInfo(&tree, u""),
                              module->bomSubmit(&tree), module->sys1Refer(&tree), module->oneCabCir2(&tree),
                              module->dqBoms(rows), module->hmBoms(rows, u"", u"K01", u"")})
        answers += answer ? '1' : '0';
    EXPECT_EQ(answers, "00000000");
    EXPECT_EQ(cloud().loginCalls, 8);
    EXPECT_EQ(cloud().projectInfoCalls + cloud().submitBomCalls + cloud().submitItmCalls + cloud().submitOneCabCalls, 0);
    EXPECT_TRUE(cloud().importQueries.empty());

    cloud().loginResult = 1;
    EXPECT_TRUE(module->login());
    EXPECT_TRUE(module->login());
    EXPECT_EQ(cloud().loginCalls, 9);  // logged in: no second login
}

// The cloud's trees come with every device's rows unpacked; a submit refreshes them from what the cloud kept;
// the other entries hand their argument on.
TEST_F(Exports, CloudTreesComeWithTheirRowsAndTheForwardingEntriesHandTheirArgumentOn) {
    cloud().projectInfo = stationWithRows;
    HMProjectTree_INFO* remote = module->remote();
    ASSERT_NE(remote, nullptr);
    std::string unpacked;
    for (const HMProjectTree_INFO* device : remote->m_arrCabinets)
        unpacked += "P:" + rowsText(device->m_arrPrimaryBom) + " S:" + rowsText(device->m_arrSecondaryBom) + "|";
    EXPECT_EQ(unpacked, "P:断路器/NSX100/2; S:继电器/RX-1/1;|P:断路器/NSX100/2; S:继电器/RX-1/1;|");  // the child row stays out
    module->freeTree(remote);

    std::unique_ptr<HMProjectTree_INFO> tree(stationWithRows(nullptr));
    BOM_INFO stale;
    stale.m_strRowName = u"stale";
    tree->m_arrCabinets[0]->m_arrPrimaryBom.Add(stale);
    bool flagSeen = false;
    cloud().submitBom = [&flagSeen](HMProjectTree_INFO*, bool flag) {
        flagSeen = flag;
        return true;
    };
    EXPECT_TRUE(module->bomSubmit(tree.get()));
    EXPECT_TRUE(flagSeen);
    EXPECT_EQ(rowsText(tree->m_arrCabinets[0]->m_arrPrimaryBom), "断路器/NSX100/2;");
    // Without devices, or refused, the tree's rows stay as they are.
    cloud().submitBom = [](HMProjectTree_INFO*, bool) { return false; };
    tree->m_arrCabinets[0]->m_arrPrimaryBom.Add(stale);
    EXPECT_FALSE(module->bomSubmit(tree.get()));
    EXPECT_EQ(rowsText(tree->m_arrCabinets[0]->m_arrPrimaryBom), "断路器/NSX100/2;stale//;");
    HMProjectTree_INFO alone;
    cloud().submitBom = [](HMProjectTree_INFO*, bool) { return true; };
    EXPECT_TRUE(module->bomSubmit(&alone));

    cloud().submitItm = [&alone](HMProjectTree_INFO* given) { return given == &alone; };
    EXPECT_TRUE(module->sys1Refer(&alone));
    EXPECT_TRUE(module->oneCabCir2(&alone));
    cloud().dqRows.Add(BOM_INFO{u"", u"灯", u"AD16", u"1", u"", u"L1"});
    Rows rows;
    EXPECT_TRUE(module->dqBoms(rows));
    EXPECT_EQ(rows, cloud().dqRows);
}

TEST_F(Exports, ProjectInfoAndCabinetRowsComeFromTheLocalDocuments) {
    cloud().projectInfo = stationWithRows;
    acedRegCmds()->lookup(u"HMXmCreate")->handler();
    ASSERT_TRUE(install.exists(projectPath("Station/K-1/Hexmoor.xml")));

    HMProjectTree_INFO tree;
    EXPECT_TRUE(module->projectInfo(&tree, u""));  // the current project, which HMXmCreate made
    EXPECT_EQ(tree.m_strID, CString(u"P-7"));
    EXPECT_EQ(cabinetsText(tree), "K-1:K01，K02///;K-3:K03///;");
    ASSERT_EQ(tree.m_arrCabinets.GetSize(), 2);
    EXPECT_EQ(rowsText(tree.m_arrCabinets[0]->m_arrPrimaryBom), "断路器/NSX100/2;");

    Rows rows;
    cloud().importRows.Add(BOM_INFO{u"", u"n", u"m", u"1", u"", u""});
    EXPECT_TRUE(module->hmBoms(rows, u"", u"K02", u"ignored"));  // the second number of "K01，K02"
    EXPECT_TRUE(module->hmBoms(rows, stationFile(), u"K03", u""));
    EXPECT_TRUE(module->hmBoms(rows, u"", u"K09", u""));  // not found: asked all the same
    EXPECT_TRUE(module->hmBoms(rows, u"", u"", u""));
    EXPECT_EQ(queries(), "P-7/id-K-1;P-7/id-K-3;P-7/;P-7/;");
    EXPECT_EQ(rows.GetSize(), 1);
}

TEST_F(Exports, AProjectWithoutDocumentAsksTheCloudWithEmptyIdsAndSaysNothing) {
    install.writeFile(projectPath("Local/Local.itm"), "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
    const CString local = projects() + u"Local\\Local.itm";
    Rows rows;
    EXPECT_TRUE(module->hmBoms(rows, local, u"K01", u""));
    EXPECT_EQ(queries(), "/;");
    const CString printedBefore = output.printed;

    HMProjectTree_INFO tree;
    EXPECT_FALSE(module->projectInfo(&tree, local));
    EXPECT_EQ(output.printed.Mid(printedBefore.GetLength()),
              QxFormat(u"项目%s的Hexmoor相关信息不存在，无法从Hexmoor调用明细！\n", QxFs::ToNativeText(local)));
    EXPECT_TRUE(tree.m_arrChildren.IsEmpty());
}
