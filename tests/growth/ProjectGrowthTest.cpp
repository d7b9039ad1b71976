// Project trees and project files of a size that once cost quadratic time: a very wide level, a very deep
// chain of sub-projects, .prj files of a million lines.
#include "centre/operations/CentreError.h"
#include "centre/operations/TreeChecks.h"
#include "common/CapturedOutput.h"
#include "common/ScriptedBackend.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "project/ProjectFiles.h"
#include "project/folders/TreeToFolders.h"
#include "support/Encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int kLineCount = 1 << 20;

// A new last child of `parent`, which owns it.
HMProjectTree_INFO* addChild(HMProjectTree_INFO& parent, const CString& name, const CString& type,
                             const CString& schema = {}) {
    auto* child = new HMProjectTree_INFO;
    child->m_strName = name;
    child->m_strType = type;
    child->m_strDataSchema = schema;
    child->m_pParent = &parent;
    parent.m_arrChildren.Add(child);
    return child;
}

} // namespace

// The check that sibling names differ ignoring case once compared every pair.
TEST(CentreSiblingsGrowth, AVeryWideLevelIsCheckedAndItsLastClashFound) {
    constexpr int kDevices = 300000;
    HMProjectTree_INFO root;
    root.m_strName = u"wide";
    for (int i = 0; i < kDevices; ++i) addChild(root, CString(u"Cabinet-") + CString(std::to_string(i)), u"0");
    EXPECT_NO_THROW(CheckNewProjectTree(root));
    root.m_arrChildren[kDevices - 1]->m_strName = u"CABINET-0";
    EXPECT_THROW(CheckNewProjectTree(root), CCentreError);
}

// Making a project from a cloud tree that is one long chain of sub-projects: every file operation walks its
// whole path, so each level once cost the square of its depth in path lookups, each of them as long again.
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
    for (int level = 0; level < 1000; ++level) at = addChild(*at, u"s", u"100", u"<NewDataSet/>");
    EXPECT_TRUE(CreateProjectFromNode(client, projects.logic(), &root));
    std::string deepest = "P";
    for (int level = 1; level <= 63; ++level) deepest += "/s";
    EXPECT_TRUE(projects.exists(deepest + "/s.itm"));
    EXPECT_FALSE(projects.exists(deepest + "/s"));
    EXPECT_TRUE(output.printed.Contains(u"超过64层"));
    SetCorvaneInstallDirOverride(CString());
}

// A million empty lines ahead of a million content lines: each empty line taken out on its own moved
// the million lines behind it.
TEST(ProjectNotesGrowth, InsertingNotesIntoAFileOfManyEmptyLines) {
    TempFolder folder;
    std::string text = "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n";
    text.reserve(text.size() + 5 * kLineCount);
    for (int i = 0; i < kLineCount; ++i) text += "\r\n";
    for (int i = 0; i < kLineCount; ++i) text += "x\r\n";
    text += "$END CONTENT OF PRJ\r\n$EOF";
    folder.writeFile("big.prj", text);

    PrjNoteList notes;
    notes.Add({u"工程名称", u"一期"});
    ASSERT_TRUE(InsertNotes(folder.logic() + u"big.prj", notes));
    std::string expected = EncodeLegacy(u"$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n工程名称\r\n一期\r\n$END_ONE_NOTE\r\n"
                                        u"$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n");
    for (int i = 0; i < kLineCount; ++i) expected += "x\r\n";
    expected += "$END CONTENT OF PRJ\r\n$EOF\r\n";
    EXPECT_TRUE(folder.readFile("big.prj") == expected);
}

// Note blocks that all lost their value lines: each value put back on its own moved every line behind it.
TEST(ProjectNotesGrowth, UpdatingDeviceNotesOfManyBlocksWithoutValueLines) {
    TempFolder folder;
    const std::string block = EncodeLegacy(u"$BEGIN_ONE_NOTE\r\n柜编号\r\n$END_ONE_NOTE\r\n");
    constexpr int kBlocks = kLineCount / 3;
    std::string text = "$BEGIN NOTE OF PRJ\r\n";
    text.reserve(text.size() + block.size() * kBlocks + 100);
    for (int i = 0; i < kBlocks; ++i) text += block;
    text += "$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";
    folder.writeFile("K1.prj", text);

    HMProjectTree_INFO node;
    node.m_strName = u"K1";
    node.m_strType = u"0";
    node.m_strPath = folder.logic();
    node.m_strCirNo = u"K1";
    ASSERT_TRUE(UpdateDeviceNotes(&node));
    std::string expected = "$BEGIN NOTE OF PRJ\r\n";
    const std::string filled = EncodeLegacy(u"$BEGIN_ONE_NOTE\r\n柜编号\r\nK1\r\n$END_ONE_NOTE\r\n");
    for (int i = 0; i < kBlocks; ++i) expected += filled;
    expected += EncodeLegacy(u"$BEGIN_ONE_NOTE\r\n柜名称\r\n\r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\n柜型号\r\n\r\n"
                             u"$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\n柜体尺寸\r\n\r\n$END_ONE_NOTE\r\n");
    expected += "$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF\r\n";
    EXPECT_TRUE(folder.readFile("K1.prj") == expected);  // a megabyte-long difference would drown the report
}
