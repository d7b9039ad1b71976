// The journal protocol against a real server: the journal's birth, its growth under submits, the lock,
// the backup that restores lost lines, whether a client is behind, and sites that break during an update:
// no staged file is left missing, and the journal on the site is never shorter than before.
#include "RepositoryFixture.h"

#include "repository/VersionFile.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

class Journal : public RepositoryFixture {
protected:
    CStringArray siteLines(const char16_t* name = u"Server.xml") const {
        CStringArray lines;
        ReadFileLines(site.logic() + name, lines, false);
        return lines;
    }
    void writeSite(const char16_t* name, const CString& text) { ASSERT_TRUE(WriteLegacyText(site.logic() + name, text)); }
    CString clientLine(const char16_t* name = u"Client.xml") const {
        CString line;
        ReadFirstLine(install.logic() + name, line);
        return line;
    }
    void submit(CMyFtpConnection& connection, const std::string& name, const std::string& bytes = "dwg") {
        install.writeFile("work/" + name, bytes);
        ASSERT_TRUE(connection.SubmitFile(install.logic() + u"work\\" + CString(name), CString(name)));
    }
    static CString stampOf(const CString& line) {
        const int first = line.Find(u'|');
        return line.Mid(first + 1, line.Find(u'|', first + 1) - first - 1);
    }
    // The journal's lines below the version line as "path operation; ", in their order.
    std::string entries() const {
        CString text;
        const CStringArray lines = siteLines();
        for (int i = 1; i < lines.GetSize(); ++i)
            text += lines[i].Left(lines[i].Find(u'|')) + u" " + lines[i].Mid(lines[i].ReverseFind(u'|') + 1) + u"; ";
        return text.ToUtf8();
    }
};

const char16_t* const kTwoLines =
    u"版本日期：2015,01,01,00,00,02\nb.dwg|2015,01,01,00,00,02|MOD\na.dwg|2015,01,01,00,00,01|MOD";

} // namespace

TEST_F(Journal, TheFirstClientOfAnEmptySiteGivesItItsJournalFromItsVersionOrTheTime) {
    EXPECT_EQ(client()->CheckClientVersion(), 0);
    const CStringArray lines = siteLines();
    ASSERT_EQ(lines.GetSize(), 1);
    EXPECT_TRUE(lines[0].StartsWith(u"版本日期：20")) << lines[0];
    EXPECT_EQ(lines[0], clientLine());

    QxFs::DeleteFile(site.logic() + u"Server.xml");
    ASSERT_TRUE(WriteLegacyText(install.logic() + u"Client.xml", u"版本日期：2015,03,02,09,05,07"));
    EXPECT_EQ(client()->CheckClientVersion(), 0);
    EXPECT_EQ(siteLines(), CStringArray{u"版本日期：2015,03,02,09,05,07"});
}

// One client submits until another changes the main library: it is behind until it syncs; a journal lock
// another host left is waited for and then broken.
TEST_F(Journal, GrowsWithEverySubmitUnderStampsThatNeverGoBackAndTellsWhenTheClientIsBehind) {
    auto connection = client();
    for (const char* name : {"a.dwg", "b.dwg", "c.dwg", "a.dwg", "d.dwg"}) submit(*connection, name, name);
    EXPECT_EQ(entries(), "d.dwg MOD; a.dwg MOD; c.dwg MOD; b.dwg MOD; ");  // a replaced file keeps its one line
    const CStringArray lines = siteLines();
    for (int i = 1; i + 1 < lines.GetSize(); ++i)
        EXPECT_GT(stampOf(lines[i]).CompareNoCase(stampOf(lines[i + 1])), 0) << lines[i] << " / " << lines[i + 1];
    EXPECT_EQ(lines[0], u"版本日期：" + stampOf(lines[1]));
    EXPECT_EQ(site.readFile("a.dwg"), "a.dwg");
    EXPECT_FALSE(site.exists("Server.xml.bak"));  // the journal lock is gone
    EXPECT_EQ(siteLines(u"Server.backup"), lines);  // the backup follows the journal at once
    EXPECT_EQ(clientLine(), lines[0]);  // a client in step stays in step
    EXPECT_EQ(connection->CheckClientVersion(), 0);
    bool mainLibChanged = true;
    EXPECT_FALSE(connection->CheckServerVersion(mainLibChanged));

    // Another client changes the main library.
    writeSite(u"Server.xml", u"版本日期：2099,01,01,00,00,00\nData\\QxMainLib.mdb|2099,01,01,00,00,00|MOD\n" + lines[1]);
    EXPECT_EQ(connection->CheckClientVersion(), 1);
    ASSERT_TRUE(connection->CheckServerVersion(mainLibChanged));
    EXPECT_TRUE(mainLibChanged);
    EXPECT_TRUE(connection->SyncClientVersion());
    EXPECT_EQ(clientLine(), u"版本日期：2099,01,01,00,00,00");
    EXPECT_EQ(clientLine(u"Client_PartLib.xml"), u"版本日期：2099,01,01,00,00,00");
    EXPECT_EQ(connection->CheckClientVersion(), 0);
    EXPECT_FALSE(connection->FindMainLibChange(site.logic() + u"Server.xml", u"版本日期：2099,01,01,00,00,00"));
    EXPECT_TRUE(connection->FindMainLibChange(site.logic() + u"Server.xml", u""));

    // A journal lock of another host is waited for, then broken; one this host left behind is its own at once.
    writeSite(u"Server.xml.bak", u"10.0.0.2(beta)");
    connection->LockVersionFile();
    EXPECT_EQ(siteLines(u"Server.xml.bak"), CStringArray{u"10.0.0.1(alpha)"});
    connection->LockVersionFile();
    EXPECT_EQ(siteLines(u"Server.xml.bak"), CStringArray{u"10.0.0.1(alpha)"});
}

// A lost line hides behind an added one when lines are only counted: the journal is repaired by content.
// Damaged journals, longer than their backup, without a version line or with junk lines, still come out
// whole and stamped: junk lines never shorten the journal.
TEST_F(Journal, RestoresLostLinesByContentAndKeepsStampsWellFormed) {
    const CString good = u"版本日期：2015,01,01,00,00,03\nb.dwg|2015,01,01,00,00,03|MOD\nlost.dwg|2015,01,01,00,00,02|MOD\n"
                         u"a.dwg|2015,01,01,00,00,01|MOD";
    struct Case {
        const char16_t* journal;
        const char16_t* backup;  // nullptr: none on the site
        std::vector<const char16_t*> present;
        int lines = 0;  // when the count is known: every line kept and one added
    };
    const std::vector<Case> cases = {
        {u"版本日期：2015,01,01,00,00,03\nb.dwg|2015,01,01,00,00,03|MOD\na.dwg|2015,01,01,00,00,01|MOD", good.c_str(),
         {u"b.dwg|", u"lost.dwg|", u"a.dwg|"}},
        {u"PK\x03\x04 a drawing\nwritten\nover\nthe\njournal\nby\na\nstaging\nmix-up", good.c_str(),
         {u"b.dwg|", u"lost.dwg|", u"a.dwg|", u"\n||\n"}},  // junk lines stay, as lines without fields
        {u"a.dwg|2099,01,01,00,00,01|MOD", nullptr, {u"a.dwg|2099,01,01,00,00,01|MOD"}},
        {u"版本日期：2015,01,01,00,00,03\njunk without bars\n\x01\x02|\n||\na.dwg|2015|MOD", nullptr, {u"a.dwg|2015|MOD"}, 6},
    };
    for (const Case& c : cases) {
        writeSite(u"Server.xml", c.journal);
        if (c.backup) writeSite(u"Server.backup", c.backup);
        else QxFs::DeleteFile(site.logic() + u"Server.backup");
        auto connection = client();
        submit(*connection, "c.dwg");
        const CStringArray lines = siteLines();
        ASSERT_GE(lines.GetSize(), 2) << CString(c.journal);
        EXPECT_TRUE(c.lines == 0 || lines.GetSize() == c.lines) << lines.GetSize() << " lines of " << CString(c.journal);
        EXPECT_TRUE(IsVersionLine(lines[0])) << lines[0];
        EXPECT_TRUE(lines[1].StartsWith(u"c.dwg|")) << lines[1];
        EXPECT_EQ(lines[0], u"版本日期：" + stampOf(lines[1]));
        for (int i = 2; i < lines.GetSize(); ++i) {
            if (lines[i].Find(u'|') > 0) {
                EXPECT_GT(stampOf(lines[1]).CompareNoCase(stampOf(lines[i])), 0) << lines[i];
            }
        }
        CString all;
        for (const CString& line : lines) all += line + u"\n";
        for (const char16_t* part : c.present) EXPECT_GE(all.Find(part), 0) << CString(part) << "\n" << all;
        EXPECT_EQ(siteLines(u"Server.backup"), lines);
    }
}

// Every operation leaves its lines: a folder tree file by file (drawings and project files only), renames,
// folders and deletes; renaming onto an existing file asks first.
TEST_F(Journal, EachOperationLeavesItsLinesAndRenamingOntoAFileAsksFirst) {
    install.writeFile("tree/a.dwg", "a");
    install.writeFile("tree/notes.txt", "n");
    install.writeFile("tree/dev/dev.PRJ", "p");
    auto connection = client();
    ASSERT_TRUE(connection->SubmitFolderTree(u"", u"tree", install.logic() + u"tree"));
    EXPECT_EQ(site.readFile("tree/dev/dev.PRJ"), "p");
    EXPECT_FALSE(site.exists("tree/notes.txt"));
    submit(*connection, "a.dwg");
    ASSERT_TRUE(connection->SubmitRenameFile(u" a.dwg", u"b.dwg "));  // paths as typed, with blanks
    EXPECT_TRUE(site.exists("b.dwg"));
    ASSERT_TRUE(connection->SubmitNewFolder(u"", u"lib"));
    ASSERT_TRUE(connection->SubmitNewFolder(u"lib", u"sub"));
    install.writeFile("work/c.dwg", "c");
    ASSERT_TRUE(connection->SubmitFile(install.logic() + u"work\\c.dwg", u"lib\\sub\\c.dwg"));
    ASSERT_TRUE(connection->SubmitRenameFolder(u"lib", u"lib2\\"));
    EXPECT_TRUE(site.exists("lib2/sub/c.dwg"));
    ASSERT_TRUE(connection->SubmitDeleteFolder(u"lib2"));
    EXPECT_FALSE(site.exists("lib2"));
    ASSERT_TRUE(connection->SubmitDelete(u"b.dwg"));
    EXPECT_TRUE(connection->SubmitDelete(u"b.dwg"));  // gone already: nothing to do
    EXPECT_EQ(entries(), "b.dwg DEL; lib2\\ DEL; lib2\\sub\\ DEL; lib\\ DEL; lib\\sub\\c.dwg MOD; lib\\sub\\ MOD; "
                         "a.dwg DEL; tree\\dev\\dev.PRJ MOD; tree\\dev\\ MOD; tree\\a.dwg MOD; tree\\ MOD; ");

    submit(*connection, "a.dwg", "a");
    submit(*connection, "b.dwg", "b");
    prompts.answers = {u"n"};
    EXPECT_FALSE(connection->SubmitRenameFile(u"a.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "b");
    prompts.answers = {u"y"};
    EXPECT_TRUE(connection->SubmitRenameFile(u"a.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "a");
    EXPECT_EQ(prompts.questions, std::vector<CString>(2, u"重命名文件b.dwg已经存在,是否覆盖？"));
    EXPECT_FALSE(connection->SubmitRenameFile(u"none.dwg", u"c.dwg"));
    EXPECT_EQ(output.boxes.back().text, u"重命名文件<none.dwg>服务器上不存在!");
}

TEST_F(Journal, AJournalThatCannotBeReadIsNeitherReplacedNorShortened) {
    serve({"--drop-retr", "Server.xml"});
    writeSite(u"Server.xml", kTwoLines);
    auto connection = client();
    EXPECT_EQ(connection->CheckClientVersion(), 0);
    install.writeFile("c.dwg", "c");
    EXPECT_FALSE(connection->SubmitFile(install.logic() + u"c.dwg", u"c.dwg"));
    EXPECT_EQ(site.readFile("c.dwg"), "c");  // the change itself is on the site
    EXPECT_EQ(siteLines().GetSize(), 3);
    EXPECT_FALSE(site.exists("Server.xml.bak"));
}

TEST_F(Journal, WhenRenamesAreRefusedStagedFilesAndJournalUpdatesAreNeverLeftMissing) {
    serve({"--refuse-rename"});
    install.writeFile("LocalData/Ftp.bg", "");
    writeSite(u"Server.xml", kTwoLines);
    site.writeFile("a.dwg", "old");
    install.writeFile("new.dwg", "new");
    auto connection = client();
    EXPECT_TRUE(connection->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));
    EXPECT_EQ(site.readFile("a.dwg"), "new");
    // The staging file is left beside it, as a held target leaves it.
    size_t staged = 0;
    for (const auto& entry : std::filesystem::directory_iterator(site.native()))
        staged += entry.path().filename().string().rfind("#10.0.0.1(alpha)-", 0) == 0;
    EXPECT_EQ(staged, 1u);
    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"new.dwg", u"c.dwg"));
    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"new.dwg", u"d.dwg"));
    EXPECT_EQ(siteLines().GetSize(), 5);
    EXPECT_EQ(site.readFile("d.dwg"), "new");
}

namespace {

long long nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

TEST_F(Journal, TheJournalLockIsHeldByOneClientAtATime) {
    serve({"--slow-retr", "Server.xml.bak"});  // reading a lock takes 0.3 s: both find the journal free at once
    // Two processes under two identities reach for the lock at one moment and hold it for 0.5 s each; the
    // holds must never overlap. Three contests, as the moment of each look varies.
    const std::vector<const char*> hosts = {"10.0.0.1(alpha)", "10.0.0.2(beta)"};
    for (int contest = 0; contest < 3; ++contest) {
        std::vector<pid_t> children;
        const long long together = nowMs() + 1000;  // both connect first
        for (size_t i = 0; i < hosts.size(); ++i) {
            const pid_t pid = ::fork();
            ASSERT_GE(pid, 0);
            if (pid == 0) {
                ::setenv("CORVANE_HOST_ID", hosts[i], 1);
                FtpTimings timings = shortTimings();
                timings.lockPauseMs = 400;  // 2.4 s before a lock counts as abandoned
                auto child = connection(timings);
                if (!child->ConnectServer()) ::_exit(2);
                std::this_thread::sleep_for(std::chrono::milliseconds(std::max(0LL, together - nowMs())));
                child->LockVersionFile();
                const long long start = nowMs();
                std::this_thread::sleep_for(std::chrono::milliseconds(500));
                const long long end = nowMs();
                child->RemoveRemoteFileQuietly(u"Server.xml.bak");
                install.writeFile("hold" + std::to_string(i), std::to_string(start) + " " + std::to_string(end));
                ::_exit(0);
            }
            children.push_back(pid);
        }
        for (const pid_t pid : children) {
            int status = 0;
            ::waitpid(pid, &status, 0);
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        }
        long long start0 = 0, end0 = 0, start1 = 0, end1 = 0;
        std::istringstream(install.readFile("hold0")) >> start0 >> end0;
        std::istringstream(install.readFile("hold1")) >> start1 >> end1;
        EXPECT_TRUE(end0 <= start1 || end1 <= start0) << start0 << "-" << end0 << " and " << start1 << "-" << end1;
    }
}
