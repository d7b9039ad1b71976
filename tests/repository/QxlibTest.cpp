// qxlib run as people run it: separate processes, two install folders (two client machines) sharing one
// site, each under its own host identity.
#include "FtpTestServer.h"
#include "common/ShellRun.h"
#include "common/TempFolder.h"
#include "support/Encoding.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class Qxlib : public ::testing::Test {
protected:
    Qxlib() : server(site.native()) {}

    // One client machine: its install folder below `machines`, its identity "10.0.0.N(name)".
    ShellRun qxlib(const std::string& machine, const std::string& args, const std::string& input = "") {
        return RunShellCommand("cd '" + machines.native() + "' && printf '" + input + "' | CORVANE_HOST_ID='" +
                               hostId(machine) + "' " + QX_BINARY_DIR + "/bin/qxlib --install-dir '" +
                               machines.native() + "/" + machine + "' " + args + " 2>>'" + machines.native() + "/" +
                               machine + ".err'");
    }
    static std::string hostId(const std::string& machine) { return "10.0.0." + std::to_string(machine.size()) + "(" + machine + ")"; }
    void setUp(const std::string& machine) {
        ASSERT_EQ(qxlib(machine, "setup 127.0.0.1 " + std::to_string(server.port()) + " / --passive").status, 0);
    }
    std::string errors(const std::string& machine) const { return machines.readFile(machine + ".err"); }
    std::string siteText(const std::string& relative) const { return Utf16ToUtf8(DecodeLegacy(site.readFile(relative))); }
    int journalLines() const {
        const std::string text = siteText("Server.xml");
        return text.empty() ? 0 : 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    }

    TempFolder site;
    TempFolder machines;
    FtpTestServer server;
};

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

TEST_F(Qxlib, TwoPeopleKeepALibraryInStepThroughTheJournalAndTheLocks) {
    setUp("ann");
    setUp("bob");
    struct stat info{};
    ::stat((machines.native() + "/ann/LocalData/QxFTPLoginInfo.sys").c_str(), &info);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    machines.writeFile("ann/Symb1Lib/k.dwg", "v1");
    ASSERT_EQ(qxlib("ann", "submit Symb1Lib/k.dwg").status, 0) << errors("ann");
    EXPECT_EQ(site.readFile("Symb1Lib/k.dwg"), "v1");

    ShellRun run = qxlib("bob", "sync");
    ASSERT_EQ(run.status, 0) << errors("bob");
    EXPECT_EQ(machines.readFile("bob/Symb1Lib/k.dwg"), "v1");

    // Ann checks the file out; Bob takes it over; Ann's check-in is refused, Bob's goes through.
    ASSERT_EQ(qxlib("ann", "checkout 'Symb1Lib\\k.dwg'").status, 0) << errors("ann");
    machines.writeFile("ann/Symb1Lib/k.dwg", "ann's first edit");
    ASSERT_EQ(qxlib("ann", "checkout Symb1Lib/k.dwg").status, 0) << errors("ann");
    EXPECT_EQ(machines.readFile("ann/Symb1Lib/k.dwg"), "ann's first edit");  // checking out again keeps the work
    EXPECT_EQ(qxlib("bob", "--no checkout Symb1Lib/k.dwg").status, 1);
    ASSERT_EQ(qxlib("bob", "--yes checkout Symb1Lib/k.dwg").status, 0) << errors("bob");
    run = qxlib("ann", "status");
    EXPECT_TRUE(contains(run.out, "Symb1Lib\\k.dwg  (taken over by 10.0.0.3(bob)")) << run.out;
    machines.writeFile("ann/Symb1Lib/k.dwg", "ann's work");
    run = qxlib("ann", "submit Symb1Lib/k.dwg");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.out, "[Corvane] 文件<Symb1Lib\\k.dwg>的库修改作已被主机IP为10.0.0.3(bob)的用户强制撤销")) << run.out;
    EXPECT_EQ(machines.readFile("ann/Symb1Lib/k.dwg"), "ann's work");  // nothing of Ann's is lost

    machines.writeFile("bob/Symb1Lib/k.dwg", "v2");
    ASSERT_EQ(qxlib("bob", "submit Symb1Lib/k.dwg").status, 0) << errors("bob");
    EXPECT_FALSE(site.exists("Symb1Lib/k.dwg.bak"));
    EXPECT_TRUE(contains(qxlib("ann", "status").out, "behind the site's journal"));
    ASSERT_EQ(qxlib("ann", "cancel Symb1Lib/k.dwg").status, 0);
    ASSERT_EQ(qxlib("ann", "sync").status, 0) << errors("ann");
    EXPECT_EQ(machines.readFile("ann/Symb1Lib/k.dwg"), "v2");
    EXPECT_TRUE(contains(qxlib("ann", "status").out, "in step with the site's journal"));
}

TEST_F(Qxlib, TwoClientsContendingForTheJournalLoseNoLine) {
    setUp("ann");
    setUp("bob");
    const int perClient = 4;
    std::string script;
    for (const std::string machine : {"ann", "bob"}) {
        script += "(";
        for (int i = 0; i < perClient; ++i) {
            const std::string file = machine + std::to_string(i) + ".dwg";
            machines.writeFile(machine + "/" + file, file);
            script += "CORVANE_HOST_ID='" + hostId(machine) + "' " + QX_BINARY_DIR + "/bin/qxlib --install-dir '" +
                      machines.native() + "/" + machine + "' submit " + file + " >/dev/null 2>&1 || echo failed; ";
        }
        script += ") & ";
    }
    script += "wait";
    EXPECT_EQ(RunShellCommand(script).out, "");

    EXPECT_EQ(journalLines(), 1 + 2 * perClient) << siteText("Server.xml");
    for (const std::string machine : {"ann", "bob"})
        for (int i = 0; i < perClient; ++i)
            EXPECT_TRUE(contains(siteText("Server.xml"), machine + std::to_string(i) + ".dwg|")) << machine << i;
    EXPECT_FALSE(site.exists("Server.xml.bak"));
}

TEST_F(Qxlib, FoldersAndTreesTravelWithTheirJournalLines) {
    setUp("ann");
    setUp("bob");
    machines.writeFile("tree/panel/a.dwg", "a");
    machines.writeFile("tree/panel/readme.txt", "not sent");
    ASSERT_EQ(qxlib("ann", "push-tree tree Lib/tree").status, 0) << errors("ann");
    EXPECT_EQ(site.readFile("Lib/tree/panel/a.dwg"), "a");
    ASSERT_EQ(qxlib("ann", "mkdir Lib/empty").status, 0) << errors("ann");
    ASSERT_EQ(qxlib("ann", "rename Lib/tree/ Lib/tree2").status, 0) << errors("ann");
    EXPECT_TRUE(site.exists("Lib/tree2/panel/a.dwg"));

    ASSERT_EQ(qxlib("bob", "sync").status, 0) << errors("bob");
    EXPECT_EQ(machines.readFile("bob/Lib/tree2/panel/a.dwg"), "a");
    EXPECT_TRUE(machines.exists("bob/Lib/empty"));
    EXPECT_FALSE(machines.exists("bob/Lib/tree2/panel/readme.txt"));

    ASSERT_EQ(qxlib("ann", "delete Lib/tree2/").status, 0) << errors("ann");
    EXPECT_FALSE(site.exists("Lib/tree2"));
    const ShellRun run = qxlib("bob", "sync");
    EXPECT_TRUE(contains(run.out, "removed on the site: Lib\\tree2\\ (the local copy stays)")) << run.out;
    EXPECT_TRUE(machines.exists("bob/Lib/tree2/panel/a.dwg"));
}

TEST_F(Qxlib, PathsThatLeaveTheLibraryAreRefusedFromPeopleAndFromTheSite) {
    setUp("ann");
    EXPECT_EQ(qxlib("ann", "checkout ../etc/passwd").status, 2);
    EXPECT_EQ(qxlib("ann", "delete 'a\\..\\..\\b'").status, 2);
    EXPECT_EQ(qxlib("ann", "").status, 2);
    EXPECT_EQ(qxlib("ann", "setup 127.0.0.1 0 /").status, 2);

    site.writeFile("evil.dwg", "evil");
    site.writeFile("Server.xml", "V\r\n..\\evil.dwg|2099|MOD\r\nC:\\evil.dwg|2099|MOD\r\nok.dwg|2099|MOD");
    site.writeFile("ok.dwg", "ok");
    const ShellRun run = qxlib("ann", "sync");
    EXPECT_EQ(run.status, 0) << errors("ann");
    EXPECT_EQ(machines.readFile("ann/ok.dwg"), "ok");
    EXPECT_FALSE(machines.exists("evil.dwg"));
    EXPECT_TRUE(contains(errors("ann"), "passed over the journal path \"..\\evil.dwg\""));
}

TEST_F(Qxlib, WithoutASiteSaysWhatIsMissing) {
    machines.makeFolder("nobody");
    const ShellRun run = qxlib("nobody", "status");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(contains(run.out + errors("nobody"), "run qxlib setup first")) << run.out;
}
