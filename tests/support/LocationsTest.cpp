#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "support/Locations.h"

#include <gtest/gtest.h>

namespace {

class Locations : public ::testing::Test {
protected:
    void SetUp() override { SetCorvaneInstallDirOverride(install.logic()); }
    void TearDown() override { SetCorvaneInstallDirOverride(CString()); }
    TempFolder install;
};

} // namespace

TEST_F(Locations, InstallFolderIsEmptyWhenItDoesNotExist) {
    EXPECT_EQ(GetLocalInstallDir(), install.logic());
    SetCorvaneInstallDirOverride(install.logic() + u"gone");
    EXPECT_EQ(GetLocalInstallDir(), CString());
}

TEST_F(Locations, ProjectsFolderFallsBackToMyProjectsThenHome) {
    install.writeFile("Data/MyItms.Dat", "/no/such/folder\r\n");
    EXPECT_EQ(GetMyProjectsDir(), GetUserHomeFolder());
    install.makeFolder("My Projects");
    EXPECT_EQ(GetMyProjectsDir(), install.logic() + u"My Projects\\");
    install.makeFolder("Elsewhere");
    install.writeFile("Data/MyItms.Dat", (install.logic() + u"Elsewhere").ToUtf8());
    EXPECT_EQ(GetMyProjectsDir(), install.logic() + u"Elsewhere\\");
}

TEST_F(Locations, RecentProjectIsOneLineWithoutLineEndReadBackUnchanged) {
    EXPECT_EQ(GetRecentProject(), CString());
    SetRecentProject(u"\\p\\项目\\项目.itm");  // no Data folder: nothing happens
    EXPECT_FALSE(install.exists("Data/recent.dat"));
    install.makeFolder("Data");
    SetRecentProject(u"\\p\\项目\\项目.itm");
    EXPECT_EQ(install.readFile("Data/recent.dat"), "\\p\\\xCF\xEE\xC4\xBF\\\xCF\xEE\xC4\xBF.itm");
    EXPECT_EQ(GetRecentProject(), CString(u"\\p\\项目\\项目.itm"));
    // GB18030 of 原图 is also valid UTF-8 ("ԭͼ"); the current project must not be lost to that reading.
    SetRecentProject(u"\\p\\原图\\原图.itm");
    EXPECT_EQ(GetRecentProject(), CString(u"\\p\\原图\\原图.itm"));
}

