// HMXmCreate: a local project made from the cloud's tree.
#include "ProjectCommandFixture.h"
#include "project/ProjectFiles.h"
#include "support/FileSystem.h"

using XmCreate = ProjectCommandTest;

namespace {

// 变电站 with a device, a sub-project holding a device, and a second device.
HMProjectTree_INFO* substation() {
    HMProjectTree_INFO* root = CloudNode(nullptr, u"变电站", u"");
    CloudNode(root, u"K01", u"0", u"K01");
    HMProjectTree_INFO* part = CloudNode(root, u"二期", u"100");
    CloudNode(part, u"K11", u"0", u"K11");
    CloudNode(root, u"K02", u"5", u"K02，K03");
    return root;
}

} // namespace

TEST_F(XmCreate, MakesTheWholeProjectMakesItCurrentAndShowsItInTheProjectManager) {
    cloud().projectInfo = [](HMProjectTree_INFO* local) { return local ? nullptr : substation(); };
    install.writeFile("Data/recent.dat", "elsewhere.itm");
    run(u"HMXmCreate");

    const CString itm = projects() + u"变电站\\变电站.itm";
    EXPECT_EQ(GetRecentProject(), itm);
    // Only devices get the template drawing.
    EXPECT_EQ(projectsListing(), "变电站/ 变电站/Hexmoor.xml 变电站/K01/ 变电站/K01/Hexmoor.xml 变电站/K01/K01.prj 变电站/K01/图纸.DWG "
                                 "变电站/K02/ 变电站/K02/Hexmoor.xml 变电站/K02/K02.prj 变电站/K02/图纸.DWG 变电站/二期/ "
                                 "变电站/二期/Hexmoor.xml 变电站/二期/K11/ 变电站/二期/K11/Hexmoor.xml 变电站/二期/K11/K11.prj "
                                 "变电站/二期/K11/图纸.DWG 变电站/二期/二期.itm 变电站/变电站.itm");
    const std::string rootDocument = install.readFile(projectPath("变电站/Hexmoor.xml"));
    EXPECT_NE(rootDocument.find("Name=\"K01\""), std::string::npos);
    EXPECT_NE(rootDocument.find("Name=\"二期\""), std::string::npos);
    // The description words stand in the project file, "工程" words first.
    const std::string itmText = install.readFile(projectPath("变电站/变电站.itm"));
    EXPECT_NE(itmText.find("$BEGIN_ONE_NOTE"), std::string::npos);

    // The project's own line comes after its children's, and the host's project manager is asked for.
    const int projectLine = output.printed.Find(QxFormat(u"***新项目%s已建成***\n", QxFs::ToNativeText(itm)));
    EXPECT_GT(projectLine, output.printed.Find(u"K11.prj"));
    EXPECT_EQ(queuedCommands(), std::vector<CString>{u"xmmanage\n"});
    EXPECT_TRUE(output.boxes.empty());
}

TEST_F(XmCreate, AFolderInUseChangesNothingAndKeepsTheCurrentProject) {
    cloud().projectInfo = [](HMProjectTree_INFO*) { return substation(); };
    install.writeFile("Data/recent.dat", "D:\\old\\old.itm\r\n");
    install.writeFile(projectPath("变电站/notes.txt"), "mine");
    run(u"HMXmCreate");

    // The folder is named in the machine's own form.
    const CString message = QxFormat(u"%s文件夹中已有内容，请删除或另选目录！", QxFs::ToNativeText(projects() + u"变电站\\"));
    EXPECT_EQ(message.Find(u'\\'), -1);
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, message);
    EXPECT_EQ(output.boxes[0].caption, CString(u"Corvane"));
    EXPECT_EQ(output.boxes[0].style, static_cast<unsigned>(MB_ICONINFORMATION));
    EXPECT_TRUE(output.printed.EndsWith(u"\n" + message + u"\n"));
    EXPECT_EQ(install.readFile(projectPath("变电站/notes.txt")), "mine");
    EXPECT_EQ(projectsListing(), "变电站/ 变电站/notes.txt");
    EXPECT_EQ(GetRecentProject(), CString(u"D:\\old\\old.itm"));
    EXPECT_TRUE(queuedCommands().empty());
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
    EXPECT_FALSE(output.printed.Contains(u"***"));
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_TRUE(IsFolderEmpty(projects() + u"*.*"));
    EXPECT_FALSE(install.exists("Data/recent.dat"));
    EXPECT_TRUE(queuedCommands().empty());
}

TEST_F(XmCreate, CloudNamesThatLeaveTheirFolderAreRefused) {
    // The last name makes a folder of 252 bytes, but its .itm would need 256.
    for (const CString& name : {CString(u".."), CString(u"a\\..\\..\\escape"), CString(u"x/y"), CString(u"tab\there"),
                                CString(std::string(252, 'n'))}) {
        cloud().projectInfo = [name](HMProjectTree_INFO*) { return CloudNode(nullptr, name, u""); };
        output.printed.Empty();
        run(u"HMXmCreate");
        EXPECT_FALSE(output.printed.Contains(u"***")) << name.ToUtf8();
        EXPECT_FALSE(output.printed.IsEmpty()) << name.ToUtf8();
    }
    EXPECT_FALSE(install.exists("escape"));
    EXPECT_EQ(projectsListing(), "");
    EXPECT_TRUE(output.printed.Contains(u"名称有252字节"));
    EXPECT_FALSE(install.exists("Data/recent.dat"));

    // A child named ".." is passed over; the project and its other children are made.
    cloud().projectInfo = [](HMProjectTree_INFO*) {
        HMProjectTree_INFO* root = CloudNode(nullptr, u"P", u"");
        CloudNode(root, u"..", u"0", u"K9");
        CloudNode(root, u"K1", u"0", u"K1");
        CloudNode(root, CString(std::string(253, 'd')), u"0", u"K2");
        return root;
    };
    run(u"HMXmCreate");
    EXPECT_EQ(projectsListing(), "P/ P/Hexmoor.xml P/K1/ P/K1/Hexmoor.xml P/K1/K1.prj P/K1/图纸.DWG P/P.itm");
}

TEST_F(XmCreate, AProjectFolderThatCannotBeMadeIsToldAndNothingIsWritten) {
    cloud().projectInfo = [](HMProjectTree_INFO*) { return substation(); };
    install.writeFile(projectPath("变电站"), "a file where the folder would go");
    run(u"HMXmCreate");
    EXPECT_TRUE(output.printed.Contains(u"项目变电站创建失败，无法建立文件夹" + QxFs::ToNativeText(projects() + u"变电站\\")));
    EXPECT_FALSE(output.printed.Contains(u"***"));
    EXPECT_EQ(install.readFile(projectPath("变电站")), "a file where the folder would go");
    EXPECT_EQ(projectsListing(), "变电站");
    EXPECT_FALSE(install.exists("Data/recent.dat"));
}
