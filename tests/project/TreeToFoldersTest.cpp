// From a cloud tree to folders: new projects and devices with their files, folders already in use, names
// that must not become paths, updates that only add, and the write-back of changed nodes.
#include "ProjectWalkFixture.h"
#include "project/ProjectFiles.h"
#include "project/folders/TreeToFolders.h"

namespace {

// A project file's notes as "name=value;" in their order.
std::string notesText(const CString& path) {
    STRUCT_PRJ_FILE file;
    EXPECT_TRUE(ReadProjectFile(path, file)) << path;
    CString text;
    for (const STRUCT_PRJ_NOTE& note : file.m_arrNotes) text += note.m_strName + u"=" + note.m_strValue + u";";
    return text.ToUtf8();
}

class TreeToFolders : public ProjectWalkTest {
protected:
    void SetUp() override {
        ProjectWalkTest::SetUp();
        makeSubstation(project);
    }

    CString folder(const char16_t* relative) const { return projects.logic() + relative; }
    // A path as the messages show it, in the machine's own form.
    CString shown(const char16_t* relative) const { return QxFs::ToNativeText(folder(relative)); }

    HMProjectTree_INFO project;
};

} // namespace

TEST_F(TreeToFolders, NewProjectGetsItsFilesDocumentsAndTemplateDrawings) {
    ASSERT_TRUE(CreateProjectFromNode(client, projects.logic(), &project));

    EXPECT_EQ(contents(projects.native()),
              (std::set<std::string>{"变电站/", "变电站/变电站.itm", "变电站/Hexmoor.xml", "变电站/K01/", "变电站/K01/K01.prj",
                                     "变电站/K01/图纸.DWG", "变电站/K01/Hexmoor.xml", "变电站/二期/", "变电站/二期/二期.itm",
                                     "变电站/二期/Hexmoor.xml", "变电站/二期/K11/", "变电站/二期/K11/K11.prj",
                                     "变电站/二期/K11/图纸.DWG", "变电站/二期/K11/Hexmoor.xml", "变电站/K02/",
                                     "变电站/K02/K02.prj", "变电站/K02/图纸.DWG", "变电站/K02/Hexmoor.xml"}));
    EXPECT_EQ(projects.readFile("变电站/K01/图纸.DWG"), templateBytes());
    // A project has the demo's 工程 words first; a device the others first, then its cabinet notes as the cloud
    // gave them.
    EXPECT_EQ(notesText(folder(u"变电站\\变电站.itm")), "工程名称=;工程编号=;工程地点=;建设单位=;设计单位=;设计阶段=;设计人=;审核人=;"
                                                       "出图日期=;制造厂家=;出厂编号=;额定电压=;额定电流=;");
    EXPECT_EQ(notesText(folder(u"变电站\\K01\\K01.prj")),
              "建设单位=;设计单位=;设计阶段=;设计人=;审核人=;出图日期=;制造厂家=;出厂编号=;额定电压=;额定电流=;工程编号=;"
              "工程地点=;工程名称=;柜编号=1,2;柜名称=进线柜;柜型号=KYN28;柜体尺寸=800*1500*2300;");

    // Children print before their parent.
    EXPECT_EQ(output.printed, u"***新设备" + shown(u"变电站\\K01\\K01.prj") + u"已建成***\n" + u"***新设备" +
                                  shown(u"变电站\\二期\\K11\\K11.prj") + u"已建成***\n" + u"***新项目" +
                                  shown(u"变电站\\二期\\二期.itm") + u"已建成***\n" + u"***新设备" +
                                  shown(u"变电站\\K02\\K02.prj") + u"已建成***\n" + u"***新项目" +
                                  shown(u"变电站\\变电站.itm") + u"已建成***\n");
}

TEST_F(TreeToFolders, DocumentsPassAStrictParserAndReadBackThroughTheModule) {
    project.m_arrChildren[0]->m_strCirName = u"A & B <主> \"柜\"";
    ASSERT_TRUE(CreateProjectFromNode(client, projects.logic(), &project));
    const std::string base = projects.native() + "/变电站/";
    EXPECT_EQ(strictlyParsedNodes({base + "Hexmoor.xml", base + "K01/Hexmoor.xml", base + "二期/Hexmoor.xml"}),
              "变电站|P1|100;K01|id-K01|0;二期|id-二期|100;");

    EXPECT_EQ(describe({readDocument(folder(u"变电站\\K01\\Hexmoor.xml")).get()}),
              "K01(0)#id-K01 1,2/A & B <主> \"柜\"/KYN28/800*1500*2300 P: S:\n");
    EXPECT_EQ(describe(readDocument(folder(u"变电站\\Hexmoor.xml"))->m_arrChildren),
              "K01(0)#id-K01 /// P: S:\n二期(100)#id-二期 /// P: S:\nK02(0)#id-K02 /// P: S:\n");
    EXPECT_TRUE(output.boxes.empty());
}

TEST_F(TreeToFolders, FolderInUseIsLeftAloneAndItsSiblingsAreStillMade) {
    projects.writeFile("变电站/K01/notes.txt", "mine");
    projects.makeFolder("变电站/二期/only-a-folder");
    const std::set<std::string> inUse = {"变电站/", "变电站/K01/", "变电站/K01/notes.txt", "变电站/二期/", "变电站/二期/only-a-folder/"};

    // Below the top (the command makes the top folder, its children below it) only that node is skipped; a
    // folder with only a sub-folder is in use too.
    for (HMProjectTree_INFO* child : project.m_arrChildren)
        if (HMIsNotSubProjectType(child->m_strType)) CreateDeviceFromNode(client, folder(u"变电站\\"), child);
        else CreateProjectFromNode(client, folder(u"变电站\\"), child);
    std::set<std::string> made = inUse;
    made.insert({"变电站/K02/", "变电站/K02/K02.prj", "变电站/K02/图纸.DWG", "变电站/K02/Hexmoor.xml"});
    EXPECT_EQ(contents(projects.native()), made);
    EXPECT_EQ(output.printed, u"\n设备K01创建失败，" + shown(u"变电站\\K01\\") + u"文件夹中已有内容，请删除或另选目录！\n" +
                                  u"\n项目二期创建失败，" + shown(u"变电站\\二期\\") +
                                  u"文件夹中已有内容，请删除或另选目录！\n" + u"***新设备" + shown(u"变电站\\K02\\K02.prj") +
                                  u"已建成***\n");
}

TEST_F(TreeToFolders, UnsafeCloudNamesAreRefusedAndNothingOutsideTheProjectIsTouched) {
    projects.makeFolder("outside");
    projects.makeFolder("变电站");
    HMProjectTree_INFO cloud;
    cloud.m_strType = u"100";
    cloud.m_strName = u"inner";
    const char16_t* unsafe[] = {u"..", u".", u"", u"../outside", u"..\\outside", u"a/b", u"C:x", u"a*b", u"a?b",
                                u"a\"b", u"a<b", u"a>b", u"a|b", u"bell\a", u"tab\tname"};
    for (const char16_t* name : unsafe) {
        HMProjectTree_INFO* node = addDevice(cloud, name, u"9");
        addDevice(*addChild(*node, u"x", u"100"), u"below", u"1");  // a sub-tree that must not be made either
    }
    HMProjectTree_INFO* evilProject = addChild(cloud, u"..", u"100");
    addDevice(*evilProject, u"outside", u"1");
    addDevice(cloud, u"good", u"2");

    const auto before = contents(projects.native());
    ASSERT_TRUE(CreateProjectFromNode(client, folder(u"变电站\\"), &cloud));
    auto after = contents(projects.native());
    for (const char* made : {"变电站/inner/", "变电站/inner/inner.itm", "变电站/inner/Hexmoor.xml", "变电站/inner/good/",
                                    "变电站/inner/good/good.prj", "变电站/inner/good/图纸.DWG", "变电站/inner/good/Hexmoor.xml"})
        EXPECT_EQ(after.erase(made), 1u) << made;
    EXPECT_EQ(after, before);

    // One clear line per refused name, control characters shown as text.
    EXPECT_TRUE(output.printed.Contains(u"名称“..”不能用作" + shown(u"变电站\\inner\\") + u"中的文件夹名"));
    EXPECT_TRUE(output.printed.Contains(u"名称“bell\\x07”不能用作"));
    EXPECT_FALSE(output.printed.Contains(u"\a"));
    int refusals = 0;
    for (int at = output.printed.Find(u"已跳过该节点及其下级"); at >= 0; at = output.printed.Find(u"已跳过该节点及其下级", at + 1))
        ++refusals;
    EXPECT_EQ(refusals, static_cast<int>(std::size(unsafe)) + 1);

    // The other three walks refuse the same names.
    output.printed.Empty();
    for (const char16_t* name : {u"..", u"a\\b"}) {
        HMProjectTree_INFO node;
        node.m_strName = name;
        node.m_strType = u"0";
        node.m_bChanged = true;
        EXPECT_FALSE(CreateDeviceFromNode(client, folder(u"变电站\\"), &node));
        EXPECT_TRUE(UpdateLocalFromServer(client, folder(u"变电站\\"), &node));
        WriteBackChangedNodes(client, folder(u"变电站\\"), &node);
    }
    EXPECT_EQ(contents(projects.native()).size(), before.size() + 7);
    EXPECT_FALSE(projects.exists("Hexmoor.xml"));
}

TEST_F(TreeToFolders, FolderThatCannotBeMadeIsToldAndNothingIsWritten) {
    projects.makeFolder("P");
    projects.writeFile("P/K01", "a file where the device's folder would go");
    HMProjectTree_INFO device;
    device.m_strName = u"K01";
    device.m_strType = u"0";
    EXPECT_FALSE(CreateDeviceFromNode(client, folder(u"P\\"), &device));
    EXPECT_EQ(output.printed, u"\n设备K01创建失败，无法建立文件夹" + shown(u"P\\K01\\") + u"！\n");

    output.printed.Empty();
    EXPECT_FALSE(CreateProjectFromNode(client, folder(u"missing\\"), &project));  // one level only: no parent
    EXPECT_EQ(output.printed, u"\n项目变电站创建失败，无法建立文件夹" + shown(u"missing\\变电站\\") + u"！\n");
}

TEST_F(TreeToFolders, UpdateMakesOnlyTheNewDeviceAndKeepsEverythingLocal) {
    ASSERT_TRUE(CreateProjectFromNode(client, projects.logic(), &project));
    projects.writeFile("变电站/K01/mine.dwg", "drawing");
    projects.makeFolder("变电站/K99");  // gone from the cloud: stays
    projects.writeFile("变电站/K99/K99.prj", "local");
    output.printed.Empty();

    // The cloud changed K01's cabinet name and gained K03 in the sub-project.
    project.m_arrChildren[0]->m_strCirName = u"出线柜";
    addDevice(*project.m_arrChildren[1], u"K03", u"13");
    const auto before = contents(projects.native());
    for (const HMProjectTree_INFO* child : project.m_arrChildren)
        EXPECT_TRUE(UpdateLocalFromServer(client, folder(u"变电站\\"), child));

    auto after = contents(projects.native());
    for (const char* made : {"变电站/二期/K03/", "变电站/二期/K03/K03.prj", "变电站/二期/K03/图纸.DWG",
                                    "变电站/二期/K03/Hexmoor.xml"})
        EXPECT_EQ(after.erase(made), 1u) << made;
    EXPECT_EQ(after, before);
    EXPECT_EQ(output.printed, u"***新设备" + shown(u"变电站\\二期\\K03\\K03.prj") + u"已建成***\n");
    EXPECT_EQ(readDocument(folder(u"变电站\\K01\\Hexmoor.xml"))->m_strCirName, u"出线柜");
    EXPECT_EQ(readDocument(folder(u"变电站\\二期\\Hexmoor.xml"))->m_arrChildren.GetSize(), 2);
}

TEST_F(TreeToFolders, WriteBackSavesOnlyChangedNodesAndTheRootInTheGivenFolder) {
    ASSERT_TRUE(CreateProjectFromNode(client, projects.logic(), &project));
    for (const char* path : {"变电站/Hexmoor.xml", "变电站/K01/Hexmoor.xml", "变电站/K02/Hexmoor.xml",
                             "变电站/二期/Hexmoor.xml", "变电站/二期/K11/Hexmoor.xml"})
        projects.writeFile(path, "old");
    output.printed.Empty();

    // The command reads the root from the project folder: its type is empty and its name is not a folder.
    project.m_strType = u"";
    project.m_bChanged = true;
    HMProjectTree_INFO* k11 = project.m_arrChildren[1]->m_arrChildren[0];
    k11->m_bChanged = true;
    addDevice(*k11, u"deep", u"0")->m_bChanged = true;  // a device's children are not walked
    WriteBackChangedNodes(client, folder(u"变电站\\"), &project);

    for (const auto& [path, saved] : {std::pair{"变电站/Hexmoor.xml", true}, std::pair{"变电站/二期/K11/Hexmoor.xml", true},
                                      std::pair{"变电站/K01/Hexmoor.xml", false}, std::pair{"变电站/K02/Hexmoor.xml", false},
                                      std::pair{"变电站/二期/Hexmoor.xml", false}})
        EXPECT_EQ(projects.readFile(path) != "old", saved) << path;
    EXPECT_FALSE(projects.exists("变电站/二期/K11/deep"));
    EXPECT_EQ(readDocument(folder(u"变电站\\二期\\K11\\Hexmoor.xml"))->m_strCirNo, u"11");
}
