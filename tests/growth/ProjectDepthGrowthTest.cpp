// Making a project from a cloud tree that is one long chain of sub-projects: every file operation walks its
// whole path, so each level once cost the square of its depth in path lookups, each of them as long again.
#include "common/CapturedOutput.h"
#include "common/ScriptedBackend.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "project/folders/TreeToFolders.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>

TEST(ProjectDepthGrowth, AThousandLevelsOfSubProjects) {
    TempFolder install;
    TempFolder projects;
    install.makeFolder("Data");
    SetCorvaneInstallDirOverride(install.logic());
    CapturedOutput output;
    CHexmoorInteFace client{std::make_unique<ScriptedBackend>(std::make_shared<CloudScript>())};

    HMProjectTree_INFO root;
    root.m_strName = u"P";
    root.m_strType = u"100";
    root.m_strDataSchema = u"<NewDataSet/>";
    HMProjectTree_INFO* at = &root;
    for (int level = 0; level < 1000; ++level) {
        auto* child = new HMProjectTree_INFO;
        child->m_strName = u"s";
        child->m_strType = u"100";
        child->m_strDataSchema = u"<NewDataSet/>";
        child->m_pParent = at;
        at->m_arrChildren.Add(child);
        at = child;
    }
    EXPECT_TRUE(CreateProjectFromNode(client, projects.logic(), &root));
    std::string deepest = "P";
    for (int level = 1; level <= 63; ++level) deepest += "/s";
    EXPECT_TRUE(projects.exists(deepest + "/s.itm"));
    EXPECT_FALSE(projects.exists(deepest + "/s"));
    EXPECT_TRUE(output.printed.Contains(u"超过64层"));
    SetCorvaneInstallDirOverride(CString());
}
