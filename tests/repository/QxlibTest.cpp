// qxlib run as people run it: separate processes, two install folders (two client machines) sharing one
// site, each under its own host identity.
#include "FtpTestServer.h"
#include "common/ShellRun.h"
#include "common/TempFolder.h"
#include "support/Encoding.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <tuple>
#include <vector>

namespace {

class Qxlib : public ::testing::Test {
protected:
    // Starts the site with the faults that `options` of tests/data/repository/ftp_server.py give it; a test
    // that names none gets a site without faults at its first set-up.
    void serve(std::vector<std::string> options = {}) { server.emplace(site.native(), std::move(options)); }
    int port() {
        if (!server) serve();
        return server->port();
    }
    void siteJournal(const std::string& lines) { site.writeFile("Server.xml", "版本日期：2099,01,01,00,00,09\r\n" + lines); }

    // One client machine: its install folder below `machines`, its identity "10.0.0.N(name)".
    std::string command(const std::string& machine, const std::string& args) const {
        return "CORVANE_HOST_ID='" + hostId(machine) + "' " + QX_BINARY_DIR + "/bin/qxlib --install-dir '" +
               machines.native() + "/" + machine + "' " + args + " 2>>'" + machines.native() + "/" + machine + ".err'";
    }
    ShellRun qxlib(const std::string& machine, const std::string& args, const std::string& input = "") {
        return RunShellCommand("cd '" + machines.native() + "' && printf '" + input + "' | " + command(machine, args));
    }
    // A command that must succeed; a failure shows the command and the client's own account.
    ShellRun done(const std::string& machine, const std::string& args, const std::string& input = "") {
        ShellRun run = qxlib(machine, args, input);
        EXPECT_EQ(run.status, 0) << args << "\n" << errors(machine);
        return run;
    }
    void submitNew(const std::string& machine, const std::string& path, const std::string& bytes) {
        machines.writeFile(machine + "/" + path, bytes);
        done(machine, "submit " + path);
    }
    // The command with the FTP dialogue written to the machine's error file.
    ShellRun verbose(const std::string& machine, const std::string& args) {
        return RunShellCommand("cd '" + machines.native() + "' && QX_FTP_VERBOSE=1 " + command(machine, args));
    }
    // Runs the commands at the same moment, each a separate process; gives their exit statuses in order.
    std::vector<int> together(const std::vector<std::pair<std::string, std::string>>& runs) {
        std::string script = "cd '" + machines.native() + "' || exit 1; ";
        for (size_t i = 0; i < runs.size(); ++i)
            script += "(" + command(runs[i].first, runs[i].second) + " >/dev/null; echo $? > status" + std::to_string(i) + ") & ";
        RunShellCommand(script + "wait");
        std::vector<int> statuses;
        for (size_t i = 0; i < runs.size(); ++i) statuses.push_back(std::stoi("0" + machines.readFile("status" + std::to_string(i))));
        return statuses;
    }
    // The files below a folder, as "relative path=content" lines in name order, leaving out what is no
    // library file (the client's own folders, version files and the site's protocol files).
    static std::string libraryOf(const std::string& root) {
        std::vector<std::string> lines;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            const std::string relative = std::filesystem::relative(entry.path(), root).string();
            if (!entry.is_regular_file() || relative.rfind("Lib/", 0) != 0 || relative.find(".bak") != std::string::npos) continue;
            std::string bytes;
            std::ifstream in(entry.path(), std::ios::binary);
            bytes.assign(std::istreambuf_iterator<char>(in), {});
            lines.push_back(relative + "=" + bytes);
        }
        std::sort(lines.begin(), lines.end());
        std::string text;
        for (const std::string& line : lines) text += line + "\n";
        return text;
    }
    static std::string hostId(const std::string& machine) { return "10.0.0." + std::to_string(machine.size()) + "(" + machine + ")"; }
    void setUp(std::initializer_list<const char*> people, const std::string& options = "--passive") {
        for (const std::string machine : people)
            ASSERT_EQ(qxlib(machine, "setup 127.0.0.1 " + std::to_string(port()) + " / " + options).status, 0);
    }
    std::string errors(const std::string& machine) const { return machines.readFile(machine + ".err"); }
    std::string siteText(const std::string& relative) const { return Utf16ToUtf8(DecodeLegacy(site.readFile(relative))); }
    int journalLines() const {
        const std::string text = siteText("Server.xml");
        return text.empty() ? 0 : 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    }

    TempFolder site;
    TempFolder machines;
    std::optional<FtpTestServer> server;
};

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

// One site, two people, step by step: what one sends the other gets, locks pass between them, a sync never
// replaces a person's work, folders and trees travel, and a command that did not do its work fails.
TEST_F(Qxlib, TwoPeopleKeepALibraryInStepThroughTheJournalAndTheLocks) {
    serve({"--refuse-stor", "bad.dwg"});
    setUp({"ann", "bob"});
    for (const std::string name : {"k", "m", "n"}) submitNew("ann", "Lib/" + name + ".dwg", "v1");
    done("bob", "sync");
    EXPECT_EQ(libraryOf(machines.native() + "/bob"), "Lib/k.dwg=v1\nLib/m.dwg=v1\nLib/n.dwg=v1\n");

    // Ann checks k out (checking out again keeps her work); Bob takes it over; Ann's check-in is refused.
    done("ann", "checkout 'Lib\\k.dwg'");
    machines.writeFile("ann/Lib/k.dwg", "ann's work");
    done("ann", "checkout Lib/k.dwg");
    EXPECT_EQ(machines.readFile("ann/Lib/k.dwg"), "ann's work");
    EXPECT_EQ(qxlib("bob", "--no checkout Lib/k.dwg").status, 1);
    done("bob", "--yes checkout Lib/k.dwg");
    EXPECT_TRUE(contains(qxlib("ann", "status").out, "Lib\\k.dwg  (taken over by 10.0.0.3(bob)"));
    const ShellRun refused = qxlib("ann", "submit Lib/k.dwg");
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(contains(refused.out, "[Corvane] 文件<Lib\\k.dwg>的库修改作已被主机IP为10.0.0.3(bob)的用户强制撤销")) << refused.out;
    EXPECT_EQ(machines.readFile("ann/Lib/k.dwg"), "ann's work");  // nothing of Ann's is lost

    // Ann's work: k checked out and edited, m edited without a check-out, n locked by her host on the site
    // (its line in her list lost), p a file of her own where Bob's folder will arrive by a rename.
    machines.writeFile("ann/Lib/m.dwg", "ann's m");
    machines.writeFile("ann/Lib3/p.dwg", "ann's p");
    for (const std::string name : {"k", "m", "n"}) {
        done("bob", "--yes checkout Lib/" + name + ".dwg");
        submitNew("bob", "Lib/" + name + ".dwg", "v2");
    }
    EXPECT_FALSE(site.exists("Lib/k.dwg.bak"));
    submitNew("bob", "Lib2/p.dwg", "bob's p");
    done("bob", "rename Lib2/ Lib3");
    site.writeFile("Lib/n.dwg.bak", hostId("ann"));
    EXPECT_TRUE(contains(qxlib("ann", "status").out, "behind the site's journal"));
    const ShellRun synced = done("ann", "sync");
    const std::string kept = "kept your copy of Lib3\\p.dwg; the site's copy is Lib3\\p (site copy).dwg";
    EXPECT_TRUE(contains(synced.out, kept)) << synced.out;
    EXPECT_EQ(libraryOf(machines.native() + "/ann"), "Lib/k (site copy).dwg=v2\nLib/k.dwg=ann's work\n"
                                                     "Lib/m (site copy).dwg=v2\nLib/m.dwg=ann's m\n"
                                                     "Lib/n (site copy).dwg=v2\nLib/n.dwg=v1\n");
    EXPECT_EQ(machines.readFile("ann/Lib3/p.dwg"), "ann's p");
    EXPECT_EQ(machines.readFile("ann/Lib3/p (site copy).dwg"), "bob's p");
    EXPECT_TRUE(contains(qxlib("ann", "status").out, "in step with the site's journal"));
    // The lock went with Bob's check-in: there is nothing of Ann's to cancel.
    EXPECT_EQ(qxlib("ann", "cancel Lib/k.dwg").status, 1);
    EXPECT_TRUE(contains(errors("ann"), "has no lock on the site")) << errors("ann");

    // A tree travels with its drawings only, is renamed and deleted; a folder made empty arrives as well.
    machines.writeFile("tree/panel/a.dwg", "a");
    machines.writeFile("tree/panel/readme.txt", "not sent");
    machines.writeFile("tree/panel/bad.dwg", "refused by the site");
    EXPECT_EQ(qxlib("ann", "push-tree tree Lib/tree").status, 1);
    EXPECT_TRUE(contains(errors("ann"), "was not pushed whole: 1 file(s) were refused")) << errors("ann");
    done("ann", "mkdir Lib/empty");
    done("ann", "rename Lib/tree/ Lib/tree2");
    done("bob", "sync");
    EXPECT_EQ(machines.readFile("bob/Lib/tree2/panel/a.dwg"), "a");
    EXPECT_TRUE(machines.exists("bob/Lib/empty"));
    EXPECT_FALSE(machines.exists("bob/Lib/tree2/panel/readme.txt"));
    done("ann", "delete Lib/tree2/");
    EXPECT_FALSE(site.exists("Lib/tree2"));
    EXPECT_TRUE(contains(qxlib("bob", "sync").out, "removed on the site: Lib\\tree2\\ (the local copy stays)"));
    EXPECT_TRUE(machines.exists("bob/Lib/tree2/panel/a.dwg"));

    // Commands that found nothing to do their work on fail and say so.
    for (const char* args : {"delete Lib/none.dwg", "delete Lib/none/"})
        EXPECT_EQ(qxlib("ann", args).status, 1) << args;
    EXPECT_TRUE(contains(errors("ann"), "Lib\\none.dwg is not on the site; nothing was deleted")) << errors("ann");
    EXPECT_EQ(qxlib("bob", "cancel Lib/n.dwg").status, 1);
    EXPECT_TRUE(contains(errors("bob"), "is held by 10.0.0.3(ann), not by this host; it stays")) << errors("bob");
    EXPECT_EQ(site.readFile("Lib/n.dwg.bak"), hostId("ann"));
}

TEST_F(Qxlib, PathsOutsideTheLibraryAndWhatTheLoginFileCannotKeepAreRefused) {
    machines.makeFolder("nobody");  // without a site: says what is missing
    const ShellRun lost = qxlib("nobody", "status");
    EXPECT_EQ(lost.status, 1);
    EXPECT_TRUE(contains(lost.out + errors("nobody"), "run qxlib setup first")) << lost.out;

    setUp({"ann"});
    const std::string login = machines.readFile("ann/LocalData/QxFTPLoginInfo.sys");
    // From people: paths that leave the library, the protocol's own files, the client's own files.
    for (const char* args : {"checkout ../etc/passwd", "delete 'a\\..\\..\\b'", "", "setup 127.0.0.1 0 /",
                             "checkout Server.xml", "submit Server.xml", "submit server.BACKUP", "submit OS.log",
                             "checkout Lib/k.dwg.bak", "submit '#.txt'", "submit 'Lib/#x-1.txt'", "submit Server_Tmp.xml",
                             "submit LocalData/QxFTPLoginInfo.sys", "checkout Data/HMHost.dat", "submit Client.xml"})
        EXPECT_EQ(qxlib("ann", args).status, 2) << args;
    // What the login file's scrambling cannot keep is refused at setup, and nothing is written.
    EXPECT_EQ(qxlib("ann", "setup 127.0.0.1 21 库/符号").status, 1);
    EXPECT_EQ(qxlib("ann", "setup 127.0.0.1 21 / --user ann", "pass中文\\n").status, 1);
    EXPECT_TRUE(contains(errors("ann"), "the password holds characters that the login file cannot keep")) << errors("ann");
    EXPECT_EQ(machines.readFile("ann/LocalData/QxFTPLoginInfo.sys"), login);

    // From the site: journal paths that leave the install folder or name the client's own files.
    for (const char* own : {"evil.dwg", "LocalData/QxFTPLoginInfo.sys", "Data/HMHost.dat", "ok.dwg"})
        site.writeFile(own, "from the site");
    siteJournal("..\\evil.dwg|2099|MOD\r\nC:\\evil.dwg|2099|MOD\r\nLocalData\\QxFTPLoginInfo.sys|2099|MOD\r\n"
                "Data\\HMHost.dat|2099|MOD\r\nok.dwg|2099|MOD");
    EXPECT_EQ(qxlib("ann", "sync").status, 0) << errors("ann");
    EXPECT_EQ(machines.readFile("ann/ok.dwg"), "from the site");
    EXPECT_FALSE(machines.exists("evil.dwg"));
    EXPECT_FALSE(machines.exists("ann/Data/HMHost.dat"));
    EXPECT_EQ(machines.readFile("ann/LocalData/QxFTPLoginInfo.sys"), login);
    EXPECT_TRUE(contains(errors("ann"), "passed over the journal path \"..\\evil.dwg\"")) << errors("ann");
    EXPECT_TRUE(contains(errors("ann"), "passed over the journal path \"LocalData\\QxFTPLoginInfo.sys\""));
}

TEST_F(Qxlib, TwoClientsStagingInOneFolderAtOnceKeepTheirOwnBytes) {
    serve({"--slow-rename", "#*"});
    setUp({"ann", "bob"}, "--passive --staging");
    for (const std::string machine : {"ann", "bob"}) machines.writeFile(machine + "/Lib/" + machine + ".dwg", machine + "'s drawing");
    site.writeFile("Lib/keep.dwg", "kept");
    siteJournal("Lib\\keep.dwg|2099,01,01,00,00,09|MOD");
    EXPECT_EQ(together({{"ann", "submit Lib/ann.dwg"}, {"bob", "submit Lib/bob.dwg"}}), (std::vector<int>{0, 0}));
    for (const std::string machine : {"ann", "bob"}) EXPECT_EQ(site.readFile("Lib/" + machine + ".dwg"), machine + "'s drawing");
    EXPECT_EQ(siteText("Server.backup"), siteText("Server.xml"));
    for (const auto& entry : std::filesystem::recursive_directory_iterator(site.native()))
        EXPECT_NE(entry.path().filename().string()[0], '#') << entry.path();
}

namespace {

// A site whose first listings fail: a sync that cannot list must neither take the file for gone nor move on.
struct QxlibListingsFail : Qxlib, ::testing::WithParamInterface<std::tuple<std::string, int>> {};

INSTANTIATE_TEST_SUITE_P(Failures, QxlibListingsFail,
                         ::testing::Values(std::tuple{std::string("2"), 0},      // one listing (MLSD and LIST) fails: retried
                                           std::tuple{std::string("1000"), 1}),  // every listing fails: the client stays behind
                         [](const auto& info) { return std::get<1>(info.param) == 0 ? "OneFails" : "AllFail"; });

} // namespace

TEST_P(QxlibListingsFail, ListingsAreRetriedOnceAndThenLeaveTheClientBehind) {
    serve({"--fail-lists", std::get<0>(GetParam())});
    setUp({"ann"});
    site.writeFile("Lib/a.dwg", "a");
    siteJournal("Lib\\a.dwg|2099,01,01,00,00,09|MOD");
    const int expected = std::get<1>(GetParam());
    EXPECT_EQ(qxlib("ann", "sync").status, expected) << errors("ann");
    EXPECT_EQ(machines.exists("ann/Lib/a.dwg"), expected == 0);
    EXPECT_EQ(machines.exists("ann/Client.xml"), expected == 0);
}

TEST_F(Qxlib, AJournalUploadBrokenOffLeavesTheJournalAsItWas) {
    serve({"--cut-stor", "[S#]*"});  // uploads of the journal, its backup and staging files break off
    setUp({"ann"});
    siteJournal("a.dwg|2099,01,01,00,00,09|MOD");
    const std::string journal = site.readFile("Server.xml");
    machines.writeFile("ann/c.dwg", "c");
    EXPECT_EQ(qxlib("ann", "submit c.dwg").status, 1);
    EXPECT_EQ(site.readFile("Server.xml"), journal);
    EXPECT_FALSE(site.exists("Server.xml.bak"));
}

TEST_F(Qxlib, OfTwoCheckOutsAtTheSameMomentOneWins) {
    serve({"--slow-retr", "*.bak"});
    setUp({"ann", "bob"});
    site.writeFile("Lib/s.dwg", "s");
    for (int round = 0; round < 3; ++round) {
        const std::vector<int> statuses = together({{"ann", "--no checkout Lib/s.dwg"}, {"bob", "--no checkout Lib/s.dwg"}});
        ASSERT_EQ(std::count(statuses.begin(), statuses.end(), 0), 1) << "round " << round << errors("ann") << errors("bob");
        EXPECT_EQ(qxlib(statuses[0] == 0 ? "ann" : "bob", "cancel Lib/s.dwg").status, 0);
    }
}

TEST_F(Qxlib, ListedNamesThatAreNotPlainAreNeverJoinedToLocalFolders) {
    serve({"--lie-list", "file:../../evil.dwg", "--lie-list", "dir:../../evildir", "--lie-list", "file:x\\y.dwg"});
    setUp({"ann"});
    site.writeFile("evil.dwg", "evil");
    site.writeFile("evildir/e.dwg", "evil");
    site.writeFile("Lib/ok.dwg", "ok");
    siteJournal("Lib\\|2099,01,01,00,00,09|REN");
    EXPECT_EQ(qxlib("ann", "sync").status, 0) << errors("ann");
    EXPECT_EQ(libraryOf(machines.native() + "/ann"), "Lib/ok.dwg=ok\n");
    for (const char* outside : {"evil.dwg", "evildir", "ann/evil.dwg", "ann/evildir", "ann/Lib/x\\y.dwg"})
        EXPECT_FALSE(machines.exists(outside)) << outside;
}

TEST_F(Qxlib, TakesTheNameTheSiteListsAndListsEachFolderOnce) {
    setUp({"ann"});
    std::string journal = "版本日期：2099,01,01,00,00,09\r\nLib\\up.dwg|2099,01,01,00,00,09|MOD";
    for (int i = 0; i < 30; ++i) {
        site.writeFile("Lib/f" + std::to_string(i) + ".dwg", "f");
        journal += "\r\nLib\\f" + std::to_string(i) + ".dwg|2099,01,01,00,00,08|MOD";
    }
    site.writeFile("Lib/up.DWG", "upper");
    site.writeFile("Server.xml", journal);
    // At a terminal (script gives it one) each line tells how far the sync has come.
    const ShellRun run = RunShellCommand("cd '" + machines.native() + "' && QX_FTP_VERBOSE=1 script -qec \"" +
                                         command("ann", "sync") + "\" /dev/null");
    EXPECT_EQ(run.status, 0) << errors("ann");
    EXPECT_TRUE(contains(run.out, "[31/31] took Lib\\up.dwg")) << run.out;
    EXPECT_EQ(machines.readFile("ann/Lib/up.dwg"), "upper");
    EXPECT_EQ(machines.readFile("ann/Lib/f29.dwg"), "f");
    const std::string dialogue = errors("ann");
    size_t listings = 0;
    for (size_t at = dialogue.find("> MLSD"); at != std::string::npos; at = dialogue.find("> MLSD", at + 1)) ++listings;
    EXPECT_EQ(listings, 2u);  // the root and Lib
}

TEST_F(Qxlib, TheFtpDialogueNeverShowsThePassword) {
    serve({"--user", "ann", "--password", "s3cret"});
    done("ann", "setup 127.0.0.1 " + std::to_string(port()) + " / --passive --user ann", "s3cret\\n");
    EXPECT_EQ(verbose("ann", "status").status, 0) << errors("ann");
    EXPECT_TRUE(contains(errors("ann"), "> PASS ****")) << errors("ann");
    EXPECT_FALSE(contains(errors("ann"), "s3cret"));
}

// Three people at once in one folder, round after round: each sends a drawing of its own, all three try to
// check out one shared drawing (one wins, edits it while the others sync, and sends it back), and all
// sync. No line, file or person's work may be lost, and the three libraries must end alike.
TEST_F(Qxlib, ThreeClientsWorkingInOneFolderAtOnceLoseNothing) {
    const std::vector<std::string> people = {"ann", "bob", "cyd"};
    setUp({"ann", "bob", "cyd"});
    submitNew("ann", "Lib/shared.dwg", "start");
    constexpr int kRounds = 50;  // about 2 s a round on two cores
    for (int round = 0; round < kRounds; ++round) {
        const std::string r = std::to_string(round);
        std::vector<std::pair<std::string, std::string>> submits, checkOuts;
        for (const std::string& person : people) {
            machines.writeFile(person + "/Lib/" + person + r + ".dwg", person + " " + r);
            submits.emplace_back(person, "submit Lib/" + person + r + ".dwg");
            checkOuts.emplace_back(person, "--no checkout Lib/shared.dwg");
        }
        ASSERT_EQ(together(submits), (std::vector<int>{0, 0, 0})) << "round " << r;
        const std::vector<int> taken = together(checkOuts);
        ASSERT_EQ(std::count(taken.begin(), taken.end(), 0), 1) << "round " << r;
        const std::string winner = people[std::find(taken.begin(), taken.end(), 0) - taken.begin()];
        machines.writeFile(winner + "/Lib/shared.dwg", winner + "'s edit " + r);
        std::vector<std::pair<std::string, std::string>> syncs;
        for (const std::string& person : people) syncs.emplace_back(person, "sync");
        ASSERT_EQ(together(syncs), (std::vector<int>{0, 0, 0})) << "round " << r;
        EXPECT_EQ(machines.readFile(winner + "/Lib/shared.dwg"), winner + "'s edit " + r);  // kept while checked out
        done(winner, "submit Lib/shared.dwg");
        std::filesystem::remove(machines.native() + "/" + winner + "/Lib/shared (site copy).dwg");
    }
    for (const std::string& person : people) done(person, "sync");
    const std::string library = libraryOf(site.native());
    EXPECT_EQ(std::count(library.begin(), library.end(), '\n'), 1 + 3 * kRounds) << library;
    for (const std::string& person : people) {
        EXPECT_EQ(libraryOf(machines.native() + "/" + person), library) << person;
        EXPECT_TRUE(contains(qxlib(person, "status").out, "in step with the site's journal")) << person;
    }
    EXPECT_EQ(journalLines(), 3 + 3 * kRounds) << siteText("Server.xml");  // the version, "Lib\\" and shared.dwg
}

// A journal lock handed from one busy host to the next is never abandoned: the waits start again for each
// new holder, so the client waits the relay out instead of breaking a live lock.
TEST_F(Qxlib, WaitsAfreshForEachNewHolderAndNeverBreaksALiveLock) {
    serve({"--relay-lock", "Server.xml.bak"});
    setUp({"ann"});
    site.writeFile("Server.xml.bak", "10.9.9.0(relay)\r\n");
    machines.writeFile("ann/Lib/k.dwg", "k");
    EXPECT_EQ(verbose("ann", "submit Lib/k.dwg").status, 0) << errors("ann");
    std::istringstream dialogue(errors("ann"));
    // Until the client appends itself to the free lock, it reads the lock and never removes it.
    int lockReads = 0;
    for (std::string line; std::getline(dialogue, line);) {
        if (!contains(line, "Server.xml.bak")) continue;
        if (line.rfind("> APPE", 0) == 0) break;
        if (line.rfind("> RETR", 0) == 0) ++lockReads;
        EXPECT_NE(line.rfind("> DELE", 0), 0u) << line;
    }
    EXPECT_GE(lockReads, 12);  // three holders, four reads each: the relay really ran
    EXPECT_TRUE(contains(siteText("Server.xml"), "Lib\\k.dwg")) << siteText("Server.xml");
}
