#include "common/ShellRun.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<std::u16string> names(const std::vector<QxFs::Entry>& entries) {
    std::vector<std::u16string> out;
    for (const auto& e : entries) out.push_back(e.name.str());
    return out;
}

mode_t modeOf(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0;
}

ino_t inodeOf(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 ? st.st_ino : 0;
}

// A process id that no process has: that of a child that has ended and been waited for.
pid_t pidOfAnEndedProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

void ageFile(const std::string& path, int seconds) {
    struct stat st;
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    const struct timespec times[2] = {{st.st_atime - seconds, 0}, {st.st_mtime - seconds, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}


} // namespace

TEST(FileSystemBoundary, NamesAreFoundInAnotherCase) {
    TempFolder dir;
    dir.writeFile("A/A.PRJ", "x");
    EXPECT_TRUE(FileExists(dir.logic() + u"a\\a.prj"));
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
    EXPECT_EQ(modeOf(dir.native() + "/keep.txt"), 0640u);
    EXPECT_EQ(QxFs::List(dir.logic()).size(), 1u);
    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"secret", "s", 0600));
    EXPECT_EQ(modeOf(dir.native() + "/secret"), 0600u);
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


// The tests run as root, who may write anything: the writer must judge by the mode bits as a user would.
TEST(AtomicWrite, RefusesWhatAnInPlaceWriteWouldRefuse) {
    TempFolder dir;
    dir.writeFile("ro.txt", "kept");
    ::chmod((dir.native() + "/ro.txt").c_str(), 0444);
    EXPECT_FALSE(QxFs::WriteAtomic(dir.logic() + u"ro.txt", "lost"));
    EXPECT_FALSE(QxFs::WritePrivate(dir.logic() + u"ro.txt", "lost"));
    EXPECT_EQ(dir.readFile("ro.txt"), "kept");
    EXPECT_EQ(modeOf(dir.native() + "/ro.txt"), 0444u);

    if (::geteuid() == 0) {
        // Judged by the class of user: another owner's file that only its owner and group may write.
        dir.writeFile("theirs.txt", "kept");
        const std::string theirs = dir.native() + "/theirs.txt";
        ASSERT_EQ(::chown(theirs.c_str(), 65534, 65534), 0);
        ::chmod(theirs.c_str(), 0664);
        EXPECT_FALSE(QxFs::WriteAtomic(dir.logic() + u"theirs.txt", "lost"));
        ASSERT_EQ(::chown(theirs.c_str(), 65534, ::getegid()), 0);
        ::chmod(theirs.c_str(), 0664);
        EXPECT_TRUE(QxFs::WriteAtomic(dir.logic() + u"theirs.txt", "ours"));
        EXPECT_EQ(dir.readFile("theirs.txt"), "ours");
    }
}

TEST(AtomicWrite, AFolderThatMayNotBeWrittenIsWrittenAsInPlaceWithACopyKeptMeanwhile) {
    TempFolder dir;
    dir.writeFile("locked/file.txt", "old");
    const std::string file = dir.native() + "/locked/file.txt";
    const ino_t before = inodeOf(file);
    ::chmod((dir.native() + "/locked").c_str(), 0555);
    // Without an install folder there is no Temp\ for the copy: the file is not touched.
    SetCorvaneInstallDirOverride(dir.logic() + u"missing\\");
    EXPECT_FALSE(QxFs::WriteAtomic(dir.logic() + u"locked\\file.txt", "new"));
    EXPECT_EQ(dir.readFile("locked/file.txt"), "old");

    dir.makeFolder("install");
    SetCorvaneInstallDirOverride(dir.logic() + u"install\\");
    EXPECT_TRUE(QxFs::WriteAtomic(dir.logic() + u"locked\\file.txt", "new"));
    EXPECT_EQ(dir.readFile("locked/file.txt"), "new");
    EXPECT_EQ(inodeOf(file), before);  // rewritten where it stands, no temporary file
    EXPECT_EQ(RunShellCommand("ls -A '" + dir.native() + "/install/Temp'").out, "");  // the copy went with the write
    EXPECT_FALSE(QxFs::WriteAtomic(dir.logic() + u"locked\\new.txt", "x"));
    EXPECT_FALSE(dir.exists("locked/new.txt"));
    SetCorvaneInstallDirOverride(CString());
    ::chmod((dir.native() + "/locked").c_str(), 0755);
    EXPECT_EQ(QxFs::List(dir.logic() + u"locked").size(), 1u);
}

TEST(FileSystemBoundary, NoFolderIsMadeInAFolderThatMayNotBeWritten) {
    TempFolder dir;
    dir.writeFile("locked/file.txt", "old");
    ::chmod((dir.native() + "/locked").c_str(), 0555);
    EXPECT_FALSE(QxFs::MakeFolder(dir.logic() + u"locked\\K01"));
    EXPECT_FALSE(QxFs::MakeFolders(dir.logic() + u"locked\\P\\K01"));
    EXPECT_TRUE(QxFs::MakeFolders(dir.logic() + u"open\\P\\K01"));  // below a folder that may be written
    ::chmod((dir.native() + "/locked").c_str(), 0755);
    EXPECT_FALSE(dir.exists("locked/K01"));
    EXPECT_FALSE(dir.exists("locked/P"));
    EXPECT_TRUE(dir.exists("open/P/K01"));
}

TEST(AtomicWrite, TemporaryFilesOfKilledWritersAreNeverSeenAndGoWithTheNextWrite) {
    TempFolder dir;
    const std::string dead = ".qxtmp-" + std::to_string(pidOfAnEndedProcess()) + "-aaaaaa";
    const std::string live = ".qxtmp-" + std::to_string(::getpid()) + "-bbbbbb";
    const std::string old = ".qxtmp-" + std::to_string(::getpid()) + "-cccccc";
    for (const std::string& name : {dead, live, old}) dir.writeFile("p/" + name, "half a file");
    ageFile(dir.native() + "/p/" + old, 3600);

    EXPECT_TRUE(QxFs::List(dir.logic() + u"p").empty());
    EXPECT_EQ(QxFs::Find(dir.logic() + u"p\\*.*").size(), 2u);  // "." and ".." only

    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"p\\a.txt", "a"));
    EXPECT_FALSE(dir.exists("p/" + dead));
    EXPECT_FALSE(dir.exists("p/" + old));
    EXPECT_TRUE(dir.exists("p/" + live));  // a write under way in this very process
    EXPECT_EQ(names(QxFs::List(dir.logic() + u"p")), (std::vector<std::u16string>{u"a.txt"}));
}

// A batch writes temporaries only; its commit makes them durable, then renames them. A writer that dies
// before the commit leaves every file as it was, whole, and its temporaries go with the next write.
TEST(AtomicWrite, ABatchChangesNoFileBeforeItsCommitAndEveryFileAtIt) {
    TempFolder dir;
    for (const char* name : {"p/a.xml", "p/q/b.xml"}) dir.writeFile(name, "old");
    ::chmod((dir.native() + "/p/a.xml").c_str(), 0640);
    const auto writeBoth = [&] {
        return QxFs::WriteAtomic(dir.logic() + u"p\\a.xml", "new a") &&
               QxFs::WriteAtomic(dir.logic() + u"p\\q\\b.xml", "new b") &&
               QxFs::WriteAtomic(dir.logic() + u"p\\q\\c.xml", "new c");
    };

    const pid_t child = ::fork();
    if (child == 0) {
        QxFs::DurableWriteBatch batch;
        ::_exit(writeBoth() ? 0 : 1);  // dies before the commit
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(dir.readFile("p/a.xml"), "old");
    EXPECT_EQ(dir.readFile("p/q/b.xml"), "old");
    EXPECT_EQ(names(QxFs::List(dir.logic() + u"p\\q")), (std::vector<std::u16string>{u"b.xml"}));

    {
        QxFs::DurableWriteBatch batch;
        ASSERT_TRUE(writeBoth());
        {
            const QxFs::DurableWriteBatch inner;  // leaves its writes to the outer batch
        }
        EXPECT_EQ(dir.readFile("p/a.xml"), "old");
        EXPECT_FALSE(dir.exists("p/q/c.xml"));
        EXPECT_TRUE(batch.Commit());
        EXPECT_EQ(dir.readFile("p/a.xml"), "new a");
        // Written again after a commit: the end of the batch commits what is left.
        ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"p\\q\\b.xml", "newer b"));
        EXPECT_EQ(dir.readFile("p/q/b.xml"), "new b");
    }
    EXPECT_EQ(dir.readFile("p/q/b.xml"), "newer b");
    EXPECT_EQ(dir.readFile("p/q/c.xml"), "new c");
    EXPECT_EQ(modeOf(dir.native() + "/p/a.xml"), 0640u);
    // Only the files: the dead writer's temporaries went with the later writes, and none of the batch's is left.
    for (const char* folder : {"p", "p/q"})
        for (const auto& entry : std::filesystem::directory_iterator(dir.native() + "/" + folder))
            EXPECT_EQ(entry.path().filename().string().rfind(".qxtmp-", 0), std::string::npos) << entry.path();
}

TEST(AtomicWrite, APrivateFileGetsOwnerOnlyModeOnEveryWrite) {
    TempFolder dir;
    dir.writeFile("login.dat", "old");
    ::chmod((dir.native() + "/login.dat").c_str(), 0644);
    ASSERT_TRUE(QxFs::WritePrivate(dir.logic() + u"login.dat", "secret"));
    EXPECT_EQ(modeOf(dir.native() + "/login.dat"), 0600u);
    EXPECT_EQ(dir.readFile("login.dat"), "secret");
    ASSERT_TRUE(QxFs::WritePrivate(dir.logic() + u"new.dat", "secret"));
    EXPECT_EQ(modeOf(dir.native() + "/new.dat"), 0600u);
}

// Names that differ only in case: the exact one when it is there, else the first in listing order, whatever
// order the directory gives.
TEST(FileSystemBoundary, NamesDifferingOnlyInCaseResolveTheSameOnEveryMachine) {
    TempFolder dir;
    for (const char* name : {"AB.prj", "Ab.prj", "aB.prj", "ab.PRJ"}) dir.writeFile(std::string("f/") + name, name);
    std::string bytes;
    ASSERT_TRUE(QxFs::ReadBytes(dir.logic() + u"F\\aB.prj", bytes));
    EXPECT_EQ(bytes, "aB.prj");
    ASSERT_TRUE(QxFs::ReadBytes(dir.logic() + u"F\\ab.Prj", bytes));
    EXPECT_EQ(bytes, "AB.prj");
    ASSERT_TRUE(QxFs::WriteAtomic(dir.logic() + u"f\\AB.PRJ", "new"));
    EXPECT_EQ(dir.readFile("f/AB.prj"), "new");
    EXPECT_EQ(QxFs::List(dir.logic() + u"f").size(), 4u);
}
