// HMXmCreate: a local project made from the cloud's tree. How each node becomes its folder and files is
// checked in tests/project (TreeToFoldersTest); here the command's own steps.
#include "ProjectCommandFixture.h"
#include "project/ProjectFiles.h"
#include "support/Encoding.h"
#include "support/FileSystem.h"

#include <filesystem>

using XmCreate = ProjectCommandTest;

namespace {

// 变电站 with a device, a sub-project holding a device, a second device, and two children whose names
// cannot become folders (the second one's .prj would pass the file system's limit).
HMProjectTree_INFO* substation() {
    HMProjectTree_INFO* root = CloudNode(nullptr, u"变电站", u"");
    CloudNode(root, u"K01", u"0", u"K01");
    HMProjectTree_INFO* part = CloudNode(root, u"二期", u"100");
    CloudNode(part, u"K11", u"0", u"K11");
    CloudNode(root, u"K02", u"5", u"K02，K03");
    CloudNode(root, u"..", u"0", u"K9");
    CloudNode(root, CString(std::string(253, 'd')), u"0", u"K2");
    return root;
}

} // namespace

TEST_F(XmCreate, MakesTheWholeProjectMakesItCurrentAndShowsItInTheProjectManager) {
    cloud().projectInfo = [](HMProjectTree_INFO* local) { return local ? nullptr : substation(); };
    install.writeFile("Data/recent.dat", "elsewhere.itm");
    run(u"HMXmCreate");

    const CString itm = projects() + u"变电站\\变电站.itm";
    EXPECT_EQ(GetRecentProject(), itm);
    // Only devices get the template drawing; the children that cannot be folders are passed over.
    EXPECT_EQ(projectsListing(), "变电站/ 变电站/Hexmoor.xml 变电站/K01/ 变电站/K01/Hexmoor.xml 变电站/K01/K01.prj 变电站/K01/图纸.DWG "
                                 "变电站/K02/ 变电站/K02/Hexmoor.xml 变电站/K02/K02.prj 变电站/K02/图纸.DWG 变电站/二期/ "
                                 "变电站/二期/Hexmoor.xml 变电站/二期/K11/ 变电站/二期/K11/Hexmoor.xml 变电站/二期/K11/K11.prj "
                                 "变电站/二期/K11/图纸.DWG 变电站/二期/二期.itm 变电站/变电站.itm");
    // The description words stand in the project file, in a project's order: the 工程 words first.
    const std::string itmText = install.readFile(projectPath("变电站/变电站.itm"));
    EXPECT_LT(itmText.find(EncodeLegacy(u"工程名称")), itmText.find(EncodeLegacy(u"建设单位")));

    // The project's own line comes after its children's, and the host's project manager is asked for.
    const int projectLine = output.printed.Find(QxFormat(u"***新项目%s已建成***\n", QxFs::ToNativeText(itm)));
    EXPECT_GT(projectLine, output.printed.Find(u"K11.prj"));
    EXPECT_EQ(queuedCommands(), std::vector<CString>{u"xmmanage\n"});
    EXPECT_TRUE(output.boxes.empty());
}

// Each refusal is told, leaves the projects folder as it was and keeps the current project; only the folder
// in use is told in a box as well.
TEST_F(XmCreate, ARefusedProjectChangesNothingAndKeepsTheCurrentProject) {
    const CString folder = QxFs::ToNativeText(projects() + u"变电站\\");
    const struct {
        const char* what;
        CString name;
        const char* inTheWay;  // a file written before the command; null: none
        CString told;
        const char* listing;
    } rows[] = {
        {"a folder in use", u"变电站", "变电站/notes.txt", folder + u"文件夹中已有内容，请删除或另选目录！", "变电站/ 变电站/notes.txt"},
        {"a file where the folder would go", u"变电站", "变电站", u"项目变电站创建失败，无法建立文件夹" + folder, "变电站"},
        {"a name that leaves the projects folder", u"..", nullptr, u"名称“..”不能用作", ""},
        {"a name whose .itm is too long", CString(std::string(252, 'n')), nullptr, u"名称有252字节", ""},
    };
    install.writeFile("Data/recent.dat", "D:\\old\\old.itm\r\n");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::filesystem::remove_all(install.native() + "/My Projects/变电站");
        if (row.inTheWay) install.writeFile(projectPath(row.inTheWay), "mine");
        cloud().projectInfo = [&row](HMProjectTree_INFO*) { return CloudNode(nullptr, row.name, u""); };
        output.printed.Empty();
        run(u"HMXmCreate");
        EXPECT_TRUE(output.printed.Contains(row.told)) << output.printed.ToUtf8();
        EXPECT_FALSE(output.printed.Contains(u"***"));
        EXPECT_EQ(projectsListing(), row.listing);
        EXPECT_EQ(GetRecentProject(), CString(u"D:\\old\\old.itm"));
        EXPECT_TRUE(queuedCommands().empty());
    }
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text + u"|" + output.boxes[0].caption, rows[0].told + u"|Corvane");
    EXPECT_EQ(output.boxes[0].style, static_cast<unsigned>(MB_ICONINFORMATION));
}

TEST_F(XmCreate, AFailedLoginNoTreeOrANamelessTreeEndsQuietly) {
    cloud().loginResult = 0;
    cloud().projectInfo = [](HMProjectTree_INFO*) { return substation(); };
    run(u"HMXmCreate");
    EXPECT_EQ(cloud().projectInfoCalls, 0);
    cloud().loginResult = 1;
    cloud().projectInfo = nullptr;
    run(u"HMXmCreate");  // the library gives nothing
    cloud().projectInfo = [](HMProjectTree_INFO*) { return CloudNode(nullptr, u"", u""); };
    run(u"HMXmCreate");
    EXPECT_EQ(cloud().projectInfoCalls, 2);
    EXPECT_EQ(output.printed, u"\n登录云端成功！");
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_TRUE(IsFolderEmpty(projects() + u"*.*"));
    EXPECT_FALSE(install.exists("Data/recent.dat"));
    EXPECT_TRUE(queuedCommands().empty());
}
