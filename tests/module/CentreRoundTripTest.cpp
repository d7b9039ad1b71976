// The project commands against the embedded BOM centre: one install sends its project, a second install that
// shares the centre's store makes it from the cloud and later brings it in step.
#include "ProjectCommandFixture.h"
#include "common/ScriptedPrompts.h"
#include "platform/InstallPath.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"

#include <cstdlib>

class CentreRoundTrip : public ProjectCommandTest {
protected:
    void SetUp() override {
        ProjectCommandTest::SetUp();
        layOutStation();
        layOutDevice("D1", "K02");
        useEmbeddedCentre();
    }
    void TearDown() override {
        ::unsetenv("HEXMOOR_STORE");
        ProjectCommandTest::TearDown();
    }

    // What HMItmSubmit does once its dialog ended with OK: the tree of the folders goes to the centre, and
    // the nodes it marked get their documents.
    void sendStationAsNewProject() {
        HMProjectTree_INFO tree;
        tree.m_strName = u"Station";
        tree.m_strPath = projects() + u"Station\\";
        BuildTreeFromFolders(stationFile(), &tree);
        ASSERT_TRUE(QxSys1Refer(&tree));
        WriteBackChangedNodes(*g_pHexmoorClient, projects() + u"Station\\", &tree);
        SetRecentProject(stationFile());
    }

    // Moves the session to a second install folder that shares the first one's centre.
    void switchToSecondInstall() {
        const std::string store = install.native() + "/LocalData/hexmoor.db";
        HMEndSession();
        ::setenv("HEXMOOR_STORE", store.c_str(), 1);
        SetCorvaneInstallDirOverride(second.logic());
        second.makeFolder("Data");
        second.makeFolder("My Projects");
        ASSERT_TRUE(LayOutTemplateDrawing(second.logic()));
        QxLSetLoginInfo_Varnholt_CV201301(u"acme", u"ann", u"secret", u"localhost:8585");
        HMStartSession();
    }
    void switchToFirstInstall() {
        HMEndSession();
        SetCorvaneInstallDirOverride(install.logic());
        HMStartSession();
    }

    TempFolder second;
};

TEST_F(CentreRoundTrip, SubmittedRowsReachTheCentreAndASecondInstallMakesTheProjectAndLaterTakesTheChange) {
    sendStationAsNewProject();
    EXPECT_EQ(rowsText(centreRows(u"K02")), "继电器/RX-1/2;断路器/NSX100/1;");  // the primary diagram was not read for the new project
    run(u"HMBomSubmit");
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(rowsText(centreRows(u"K02")), "N1/X1/3;继电器/RX-1/2;断路器/NSX100/1;");
    EXPECT_NE(install.readFile(projectPath("Station/D1/Hexmoor.xml")).find("F_Name=\"N1\""), std::string::npos);
    output.printed.Empty();
    run(u"HMBomCmp");  // drawings and centre agree now
    EXPECT_TRUE(output.printed.Contains(u"0 differ from the centre"));

    switchToSecondInstall();
    ScriptedPrompts prompts;
    prompts.answers.push_back(u"0");  // the centre's one project
    run(u"HMXmCreate");
    const std::string copy = "My Projects/Station/";
    ASSERT_TRUE(second.exists(copy + "D1/D1.prj"));
    EXPECT_NE(second.readFile(copy + "D1/Hexmoor.xml").find("F_Name=\"N1\""), std::string::npos);
    EXPECT_EQ(queuedCommands(), std::vector<CString>{u"xmmanage\n"});

    // The first install's device gains a drawing and sends again.
    switchToFirstInstall();
    ::unsetenv("HEXMOOR_STORE");
    install.writeFile(projectPath("Station/D1/B.dwg"), AssemblyDrawing("device_b.dxf"));
    run(u"HMBomSubmit");
    EXPECT_NE(rowsText(centreRows(u"K02")).find("继电器/RX-2/1;"), std::string::npos);

    switchToSecondInstall();
    EXPECT_EQ(second.readFile(copy + "D1/Hexmoor.xml").find("RX-2"), std::string::npos);
    output.printed.Empty();
    run(u"HMUpdate");
    EXPECT_TRUE(output.printed.Contains(u"项目Station更新完毕！"));
    EXPECT_NE(second.readFile(copy + "D1/Hexmoor.xml").find("RX-2"), std::string::npos);
    EXPECT_TRUE(second.exists(copy + "D1/图纸.DWG"));
}
