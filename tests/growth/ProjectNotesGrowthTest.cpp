// Rewrites of .prj files that once took time quadratic in the file's lines: the notes were put in, and
// empty lines taken out, one line at a time, each shifting every line behind it.
#include "common/TempFolder.h"
#include "project/ProjectFiles.h"
#include "support/Encoding.h"

#include <gtest/gtest.h>

namespace {

constexpr int kLineCount = 1 << 20;

} // namespace

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
