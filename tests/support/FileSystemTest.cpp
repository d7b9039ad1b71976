#include "common/TempFolder.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

std::vector<std::u16string> names(const std::vector<QxFs::Entry>& entries) {
    std::vector<std::u16string> out;
    for (const auto& e : entries) out.push_back(e.name.str());
    return out;
}

} // namespace

TEST(FileSystemBoundary, NamesAreFoundInAnotherCase) {
    TempFolder dir;
    dir.writeFile("A/A.PRJ", "x");
    EXPECT_TRUE(FileExists(dir.logic() + u"a\\a.prj"));
    std::string bytes;
    EXPECT_TRUE(QxFs::ReadBytes(dir.logic() + u"a\\A.prj", bytes));
    EXPECT_EQ(bytes, "x");
    // A rewrite replaces the file that was found instead of making a second one.
    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"a\\a.prj", "y"));
    EXPECT_EQ(dir.readFile("A/A.PRJ"), "y");
    EXPECT_FALSE(dir.exists("A/a.prj"));
}

TEST(FileSystemBoundary, FindFollowsTheHostsPatternRules) {
    TempFolder dir;
    dir.writeFile("f/noext", "");
    dir.writeFile("f/b.DWG", "");
    dir.writeFile("f/a.dwg", "");
    dir.makeFolder("empty");
    EXPECT_EQ(names(QxFs::Find(dir.logic() + u"f\\*.*")),
              (std::vector<std::u16string>{u".", u"..", u"a.dwg", u"b.DWG", u"noext"}));
    EXPECT_EQ(names(QxFs::Find(dir.logic() + u"f\\*.dwg")), (std::vector<std::u16string>{u"a.dwg", u"b.DWG"}));
    EXPECT_EQ(QxFs::Find(dir.logic() + u"empty\\*.*").size(), 2u);  // an empty folder still finds . and ..
    EXPECT_TRUE(QxFs::Find(dir.logic() + u"missing\\*.*").empty());
}

TEST(FileSystemBoundary, ListingsAreSortedByUpperCaseCodeUnits) {
    TempFolder dir;
    for (const char* name : {"b", "_x", "A", "a1", "Z"}) dir.writeFile(std::string("s/") + name, "");
    EXPECT_EQ(names(QxFs::List(dir.logic() + u"s")), (std::vector<std::u16string>{u"A", u"a1", u"b", u"Z", u"_x"}));
}

TEST(FileSystemBoundary, DriveLetterAndUncPathsNeverExist) {
    EXPECT_FALSE(FileExists(u"C:\\Windows"));
    EXPECT_FALSE(FileExists(u"\\\\server\\share\\x"));
    EXPECT_FALSE(QxFs::WriteAtomic(u"D:\\x.txt", "x"));
}

TEST(FileSystemBoundary, RewriteKeepsPermissionsAndLeavesNoTemporaryFile) {
    TempFolder dir;
    dir.writeFile("keep.txt", "old");
    ::chmod((dir.native() + "/keep.txt").c_str(), 0640);
    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"keep.txt", "new"));
    struct stat st;
    ASSERT_EQ(::stat((dir.native() + "/keep.txt").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_EQ(QxFs::List(dir.logic()).size(), 1u);
    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"secret", "s", 0600));
    ASSERT_EQ(::stat((dir.native() + "/secret").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST(FileExists, SerialDeviceNamesNeverExistAndFoldersDo) {
    TempFolder dir;
    dir.writeFile("COM1.txt", "x");
    dir.writeFile("com2", "x");
    dir.makeFolder("sub");
    EXPECT_FALSE(FileExists(dir.logic() + u"COM1.txt"));
    EXPECT_FALSE(FileExists(dir.logic() + u"com2"));
    EXPECT_TRUE(FileExists(dir.logic() + u"sub"));
    EXPECT_TRUE(FileExists(dir.logic() + u"*.txt"));
}

TEST(FindFilesInFolder, FiltersByBareExtensionAndWalksSubFoldersInPlace) {
    TempFolder dir;
    dir.writeFile("p/a.dwg", "");
    dir.writeFile("p/B/c.DWG", "");
    dir.writeFile("p/B/d.dxf", "");
    dir.writeFile("p/z.dwg", "");
    CStringArray found;
    FindFilesInFolder(dir.logic() + u"p", u"dwg", found, true);
    ASSERT_EQ(found.GetSize(), 3);
    EXPECT_TRUE(found[0].EndsWith(u"p\\a.dwg"));
    EXPECT_TRUE(found[1].EndsWith(u"p\\B\\c.DWG"));
    EXPECT_TRUE(found[2].EndsWith(u"p\\z.dwg"));
    found.RemoveAll();
    FindFilesInFolder(dir.logic() + u"p", u"dwg", found, false);
    EXPECT_EQ(found.GetSize(), 2);
    FindFilesInFolder(dir.logic() + u"p", u"*.*", found, false);
    EXPECT_EQ(found.GetSize(), 4);  // results are added, not replaced
    found.RemoveAll();
    FindFilesInFolder(dir.logic() + u"p", u"*.dwg", found, true);
    EXPECT_TRUE(found.IsEmpty());
}

TEST(ReadFileLines, TrimsAndDropsEmptyLinesUnlessAsked) {
    TempFolder dir;
    dir.writeFile("blank.txt", "  \r\n\t\r\n");
    dir.writeFile("mixed.txt", "  a \r\n\r\nb");
    CStringArray lines;
    EXPECT_TRUE(ReadFileLines(dir.logic() + u"blank.txt", lines, false));
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_TRUE(ReadFileLines(dir.logic() + u"mixed.txt", lines, true));
    ASSERT_EQ(lines.GetSize(), 3);
    EXPECT_EQ(lines[0], CString(u"a"));
    EXPECT_FALSE(ReadFileLines(dir.logic() + u"none.txt", lines, true));
}

TEST(IsFileInOwnFolder, NameMustMatchTheFolderIgnoringCase) {
    TempFolder dir;
    dir.writeFile("dev/DEV.prj", "");
    dir.writeFile("moved/dev.prj", "");
    EXPECT_TRUE(IsFileInOwnFolder(dir.logic() + u"dev\\DEV.prj"));
    EXPECT_FALSE(IsFileInOwnFolder(dir.logic() + u"moved\\dev.prj"));
    EXPECT_FALSE(IsFileInOwnFolder(dir.logic() + u"dev\\missing.prj"));
}
