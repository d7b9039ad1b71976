#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::u16string>;

Names names(const std::vector<QxFs::Entry>& entries) {
    Names out;
    for (const auto& e : entries) out.push_back(e.name.str());
    return out;
}

struct stat statOf(const std::string& path) {
    struct stat st {};
    ::stat(path.c_str(), &st);
    return st;
}

// A process id that no process has: that of a child that has ended and been waited for.
pid_t pidOfAnEndedProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

class FileSystem : public ::testing::Test {
protected:
    // The logic path of `relative` (written with '/') below the folder.
    CString at(const std::string& relative) const {
        CString path = dir.logic() + CString::FromUtf8(relative);
        path.Replace(u'/', u'\\');
        return path;
    }
    std::string native(const std::string& relative) const { return dir.native() + "/" + relative; }
    mode_t modeOf(const std::string& relative) const { return statOf(native(relative)).st_mode & 07777; }
    void chmod(const std::string& relative, mode_t mode) const { ::chmod(native(relative).c_str(), mode); }
    Names listed(const std::string& folder) const { return names(QxFs::List(at(folder))); }

    // Everything below `relative` as seen on disk, hidden files too, sorted: a line "name/" for each folder
    // and "name mode content" for each file, the mode in octal.
    std::string tree(const std::string& relative = "") const {
        std::vector<std::string> lines;
        const std::filesystem::path top = native(relative);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
            const std::string name = entry.path().lexically_relative(top).string();
            const std::string path = relative.empty() ? name : relative + "/" + name;
            char mode[8];
            std::snprintf(mode, sizeof mode, "%o", modeOf(path));
            lines.push_back(entry.is_directory() ? name + "/" : name + " " + mode + " " + dir.readFile(path));
        }
        std::sort(lines.begin(), lines.end());
        std::string text;
        for (const std::string& line : lines) text += line + "\n";
        return text;
    }

    TempFolder dir;
};

} // namespace

TEST_F(FileSystem, NamesAreFoundInAnotherCaseAndResolveTheSameOnEveryMachine) {
    dir.writeFile("A/A.PRJ", "x");
    EXPECT_TRUE(FileExists(at("a/a.prj")));
    // A rewrite replaces the file that was found instead of making a second one.
    ASSERT_TRUE(QxFs::WriteAtomic(at("a/a.prj"), "y"));
    EXPECT_EQ(dir.readFile("A/A.PRJ"), "y");
    EXPECT_EQ(listed("A"), Names{u"A.PRJ"});

    // Names that differ only in case: the exact one when it is there, else the first in listing order,
    // whatever order the directory gives.
    for (const char* name : {"AB.prj", "Ab.prj", "aB.prj", "ab.PRJ"}) dir.writeFile(std::string("f/") + name, name);
    std::string bytes;
    ASSERT_TRUE(QxFs::ReadBytes(at("F/aB.prj"), bytes));
    EXPECT_EQ(bytes, "aB.prj");
    ASSERT_TRUE(QxFs::ReadBytes(at("F/ab.Prj"), bytes));
    EXPECT_EQ(bytes, "AB.prj");
    ASSERT_TRUE(QxFs::WriteAtomic(at("f/AB.PRJ"), "new"));
    EXPECT_EQ(dir.readFile("f/AB.prj"), "new");
    EXPECT_EQ(listed("f").size(), 4u);
}

TEST_F(FileSystem, FindListAndFindFilesInFolderFollowTheHostsRules) {
    for (const char* name : {"f/noext", "f/b.DWG", "f/a.dwg", "f/B/c.DWG", "f/B/d.dxf", "s/b", "s/_x", "s/A", "s/a1"})
        dir.writeFile(name, "");
    dir.writeFile("s/Z", "");
    dir.makeFolder("empty");
    EXPECT_EQ(names(QxFs::Find(at("f/*.*"))), (Names{u".", u"..", u"a.dwg", u"B", u"b.DWG", u"noext"}));
    EXPECT_EQ(names(QxFs::Find(at("f/*.dwg"))), (Names{u"a.dwg", u"b.DWG"}));
    EXPECT_EQ(names(QxFs::Find(at("empty/*.*"))), (Names{u".", u".."}));
    EXPECT_TRUE(QxFs::Find(at("missing/*.*")).empty());
    EXPECT_EQ(listed("s"), (Names{u"A", u"a1", u"b", u"Z", u"_x"}));  // by upper-case code units

    // A bare extension filters, sub-folders are walked where they stand, and results are added, not replaced.
    CStringArray found;
    FindFilesInFolder(at("f"), u"dwg", found, true);
    EXPECT_EQ(found, CStringArray({at("f/a.dwg"), at("f/B/c.DWG"), at("f/b.DWG")}));
    FindFilesInFolder(at("f"), u"dwg", found, false);
    FindFilesInFolder(at("f/B"), u"*.*", found, false);
    EXPECT_EQ(found.GetSize(), 3 + 2 + 2);
    found.RemoveAll();
    FindFilesInFolder(at("f"), u"*.dwg", found, true);
    EXPECT_TRUE(found.IsEmpty());
}

TEST_F(FileSystem, WhatExistsAndWhatNeverDoes) {
    for (const char* name : {"COM1.txt", "com2", "dev/DEV.prj", "moved/dev.prj"}) dir.writeFile(name, "x");
    dir.makeFolder("sub");
    const struct {
        CString path;
        bool exists;
    } rows[] = {
        {u"C:\\Windows", false}, {u"\\\\server\\share\\x", false},  // drive letters and UNC paths
        {at("COM1.txt"), false}, {at("com2"), false},              // serial device names
        {at("sub"), true},       {at("*.txt"), true},
    };
    for (const auto& row : rows) EXPECT_EQ(FileExists(row.path), row.exists) << row.path;
    EXPECT_FALSE(QxFs::WriteAtomic(u"D:\\x.txt", "x"));
    EXPECT_FALSE(QxFs::DeleteFile(at("sub")) || QxFs::DeleteFile(at("missing.txt")));  // only a file that is there goes
    EXPECT_TRUE(IsFileInOwnFolder(at("dev/DEV.prj")));  // the name matches the folder, ignoring case
    EXPECT_FALSE(IsFileInOwnFolder(at("moved/dev.prj")));
    EXPECT_FALSE(IsFileInOwnFolder(at("dev/missing.prj")));
}

TEST_F(FileSystem, ReadFileLinesTrimsAndDropsEmptyLinesUnlessAsked) {
    dir.writeFile("blank.txt", "  \r\n\t\r\n");
    dir.writeFile("mixed.txt", "  a \r\n\r\nb");
    CStringArray lines;
    EXPECT_TRUE(ReadFileLines(at("blank.txt"), lines, false));
    EXPECT_TRUE(lines.IsEmpty());
    EXPECT_TRUE(ReadFileLines(at("mixed.txt"), lines, true));
    EXPECT_EQ(lines, CStringArray({u"a", u"", u"b"}));
    EXPECT_FALSE(ReadFileLines(at("none.txt"), lines, true));
}

// The tests run as root, who may write anything: the writer must judge by the mode bits as a user would.
TEST_F(FileSystem, RewritesKeepTheModePrivateFilesGetOwnerOnlyAndWhatAUserMayNotWriteIsRefused) {
    for (const char* name : {"keep.txt", "login.dat", "ro.txt"}) dir.writeFile(name, "old");
    chmod("keep.txt", 0640);
    chmod("login.dat", 0644);
    chmod("ro.txt", 0444);
    const std::vector<bool> written = {
        QxFs::WriteAtomic(at("keep.txt"), "new"),     QxFs::WriteAtomic(at("secret"), "s", 0600),
        QxFs::WritePrivate(at("login.dat"), "secret"), QxFs::WritePrivate(at("new.dat"), "secret"),
        QxFs::WriteAtomic(at("ro.txt"), "lost"),      QxFs::WritePrivate(at("ro.txt"), "lost"),
    };
    EXPECT_EQ(written, (std::vector<bool>{true, true, true, true, false, false}));
    // No temporary file is left.
    EXPECT_EQ(tree(), "keep.txt 640 new\nlogin.dat 600 secret\nnew.dat 600 secret\nro.txt 444 old\nsecret 600 s\n");

    if (::geteuid() == 0) {
        // Judged by the class of user: another owner's file that only its owner and group may write.
        dir.writeFile("theirs.txt", "kept");
        ASSERT_EQ(::chown(native("theirs.txt").c_str(), 65534, 65534), 0);
        chmod("theirs.txt", 0664);
        EXPECT_FALSE(QxFs::WriteAtomic(at("theirs.txt"), "lost"));
        ASSERT_EQ(::chown(native("theirs.txt").c_str(), 65534, ::getegid()), 0);
        chmod("theirs.txt", 0664);
        EXPECT_TRUE(QxFs::WriteAtomic(at("theirs.txt"), "ours"));
        EXPECT_EQ(dir.readFile("theirs.txt"), "ours");
    }
}

TEST_F(FileSystem, AFolderThatMayNotBeWrittenIsWrittenInPlaceWithACopyKeptMeanwhileAndGetsNoFolder) {
    dir.writeFile("locked/file.txt", "old");
    const ino_t before = statOf(native("locked/file.txt")).st_ino;
    chmod("locked", 0555);
    // Without an install folder there is no Temp\ for the copy: the file is not touched.
    SetCorvaneInstallDirOverride(at("missing/"));
    EXPECT_FALSE(QxFs::WriteAtomic(at("locked/file.txt"), "new"));
    EXPECT_EQ(dir.readFile("locked/file.txt"), "old");

    dir.makeFolder("install");
    SetCorvaneInstallDirOverride(at("install/"));
    EXPECT_TRUE(QxFs::WriteAtomic(at("locked/file.txt"), "new"));
    EXPECT_EQ(statOf(native("locked/file.txt")).st_ino, before);  // rewritten where it stands, no temporary file
    SetCorvaneInstallDirOverride(CString());
    // No new file nor folder in it; below a folder that may be written, folders are made.
    const std::vector<bool> made = {QxFs::WriteAtomic(at("locked/new.txt"), "x"), QxFs::MakeFolder(at("locked/K01")),
                                    QxFs::MakeFolders(at("locked/P/K01")), QxFs::MakeFolders(at("open/P/K01"))};
    EXPECT_EQ(made, (std::vector<bool>{false, false, false, true}));
    // The copy in Temp\ went with the write.
    EXPECT_EQ(tree(), "install/\ninstall/Temp/\nlocked/\nlocked/file.txt 644 new\nopen/\nopen/P/\nopen/P/K01/\n");
    chmod("locked", 0755);
}

TEST_F(FileSystem, TemporaryFilesOfKilledWritersAreNeverSeenAndGoWithTheNextWrite) {
    const std::string dead = ".qxtmp-" + std::to_string(pidOfAnEndedProcess()) + "-aaaaaa";
    const std::string live = ".qxtmp-" + std::to_string(::getpid()) + "-bbbbbb";
    const std::string old = ".qxtmp-" + std::to_string(::getpid()) + "-cccccc";
    for (const std::string& name : {dead, live, old}) dir.writeFile("p/" + name, "half a file");
    const struct stat st = statOf(native("p/" + old));
    const struct timespec anHourAgo[2] = {{st.st_atime - 3600, 0}, {st.st_mtime - 3600, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, native("p/" + old).c_str(), anHourAgo, 0), 0);

    EXPECT_TRUE(listed("p").empty());
    EXPECT_EQ(names(QxFs::Find(at("p/*.*"))), (Names{u".", u".."}));

    ASSERT_TRUE(QxFs::WriteAtomic(at("p/a.txt"), "a"));
    // Only a write under way in this very process keeps its temporary.
    EXPECT_EQ(tree("p"), live + " 644 half a file\na.txt 644 a\n");
    EXPECT_EQ(listed("p"), Names{u"a.txt"});
}

// A batch writes temporaries only; its commit makes them durable, then renames them. A writer that dies
// before the commit leaves every file as it was, whole, and its temporaries go with the next write.
TEST_F(FileSystem, ABatchChangesNoFileBeforeItsCommitAndEveryFileAtIt) {
    for (const char* name : {"p/a.xml", "p/q/b.xml"}) dir.writeFile(name, "old");
    chmod("p/a.xml", 0640);
    const auto writeBoth = [&] {
        return QxFs::WriteAtomic(at("p/a.xml"), "new a") && QxFs::WriteAtomic(at("p/q/b.xml"), "new b") &&
               QxFs::WriteAtomic(at("p/q/c.xml"), "new c");
    };
    const auto contents = [&] {
        const std::string c = dir.exists("p/q/c.xml") ? dir.readFile("p/q/c.xml") : "-";
        return dir.readFile("p/a.xml") + "," + dir.readFile("p/q/b.xml") + "," + c;
    };

    const pid_t child = ::fork();
    if (child == 0) {
        QxFs::DurableWriteBatch batch;
        ::_exit(writeBoth() ? 0 : 1);  // dies before the commit
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(contents(), "old,old,-");
    EXPECT_EQ(listed("p/q"), Names{u"b.xml"});

    {
        QxFs::DurableWriteBatch batch;
        ASSERT_TRUE(writeBoth());
        {
            const QxFs::DurableWriteBatch inner;  // leaves its writes to the outer batch
        }
        EXPECT_EQ(contents(), "old,old,-");
        EXPECT_TRUE(batch.Commit());
        EXPECT_EQ(contents(), "new a,new b,new c");
        // Written again after a commit: the end of the batch commits what is left.
        ASSERT_TRUE(QxFs::WriteAtomic(at("p/q/b.xml"), "newer b"));
        EXPECT_EQ(dir.readFile("p/q/b.xml"), "new b");
    }
    // Only the files: the dead writer's temporaries went with the later writes, and none of the batch's is left.
    EXPECT_EQ(tree("p"), "a.xml 640 new a\nq/\nq/b.xml 644 newer b\nq/c.xml 644 new c\n");
}
