// qxcad run as a person runs it: as a process, with its exit status and its output.
#include "common/ShellRun.h"
#include "ProjectVersion.h"
#include "common/TempFolder.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>

namespace {

using ProcessRun = ShellRun;

// Runs qxcad through the shell with `input` on standard input; standard error is kept apart in `err`.
ProcessRun qxcad(const TempFolder& install, const std::string& args, const std::string& input = "") {
    const std::string command = "printf '" + input + "' | " + QX_BINARY_DIR + "/bin/qxcad --install-dir '" +
                                install.native() + "/corvane' " + args + " 2>" + install.native() + "/err.txt";
    return RunShellCommand(command);
}

} // namespace

TEST(Qxcad, RunsTheCommandsGivenOnItsCommandLine) {
    TempFolder dir;
    const ProcessRun run = qxcad(dir, "HMTest HELP");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("HMBomSubmit"), std::string::npos);
    EXPECT_TRUE(dir.exists("corvane/Data"));  // a fresh install folder is laid out
}

TEST(Qxcad, AnUnknownCommandIsNamedAndFailsTheRun) {
    TempFolder dir;
    const ProcessRun run = qxcad(dir, "HMTest NOSUCH");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(dir.readFile("err.txt").find("unknown command \"NOSUCH\""), std::string::npos);
}

TEST(Qxcad, ReadsCommandsAtItsPromptWhenGivenNone) {
    TempFolder dir;
    const ProcessRun run = qxcad(dir, "", "help\\nHMTest\\nquit\\nHMLogin\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("HMUpdate"), std::string::npos);
    EXPECT_EQ(run.out.find("登录"), std::string::npos);  // nothing runs after QUIT
}

TEST(Qxcad, LogsInFromAnswersOnStandardInputThenSilentlyFromTheStoredLogin) {
    TempFolder dir;
    ProcessRun run = qxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("登录云端成功！"), std::string::npos);
    EXPECT_EQ(run.out.find("secret"), std::string::npos);
    EXPECT_EQ(dir.readFile("err.txt").find("secret"), std::string::npos);

    run = qxcad(dir, "HMUpdate");
    EXPECT_NE(run.out.find("登录云端成功！"), std::string::npos);
    EXPECT_EQ(dir.readFile("err.txt").find("Hexmoor credential"), std::string::npos);

    run = qxcad(dir, "HMLogin", "acme\\nann\\nwrong\\n");
    EXPECT_NE(run.out.find("登录云端失败！"), std::string::npos);
}

TEST(Qxcad, AModuleThatDoesNotLoadIsAClearFailure) {
    TempFolder dir;
    dir.writeFile("broken.so", "not a library");
    const ProcessRun run = qxcad(dir, "--module '" + dir.native() + "/broken.so' HMTest");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(dir.readFile("err.txt").find("does not load"), std::string::npos);
}

TEST(Qxcad, XmmanageShowsTheCurrentProjectsDevicesAndDrawings) {
    TempFolder dir;
    EXPECT_NE(qxcad(dir, "xmmanage").out.find("no current project"), std::string::npos);
    dir.writeFile("p/P/P.itm", "");
    dir.writeFile("p/P/Hexmoor.xml", "");
    dir.writeFile("p/P/D1/d1.PRJ", "");
    dir.writeFile("p/P/D1/a.dwg", "");
    dir.writeFile("p/P/stray/x.prj", "");
    dir.writeFile("corvane/Data/recent.dat", (dir.logic() + u"p\\P\\P.itm").ToUtf8());
    const std::string out = qxcad(dir, "xmmanage").out;
    // The path is shown in the machine's own form, not as the logic holds it.
    EXPECT_NE(out.find(dir.native() + "/p/P/P.itm"), std::string::npos) << out;
    EXPECT_EQ(out.find('\\'), std::string::npos);
    EXPECT_NE(out.find("项目 P  [Hexmoor]"), std::string::npos);
    EXPECT_NE(out.find("设备 D1"), std::string::npos);  // named as the folder names it
    EXPECT_NE(out.find("a.dwg"), std::string::npos);
    EXPECT_EQ(out.find("stray"), std::string::npos);
}

TEST(Qxcad, PrintsItsVersionAndLoadsNothing) {
    TempFolder dir;
    const ProcessRun run = qxcad(dir, "--version");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, std::string("qxcad ") + ProjectVersion() + "\n");
}
