// qxcad run as a person runs it: as a process, with its exit status and its output.
#include "ProjectVersion.h"
#include "Qxcad.h"

using ProcessRun = ShellRun;

TEST(Qxcad, RunsTheCommandsGivenOnItsCommandLine) {
    TempFolder dir;
    const ProcessRun run = RunQxcad(dir, "HMTest HELP");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("HMBomSubmit"), std::string::npos);
    EXPECT_TRUE(dir.exists("corvane/Data"));  // a fresh install folder is laid out
}

TEST(Qxcad, AnUnknownCommandIsNamedAndFailsTheRun) {
    TempFolder dir;
    const ProcessRun run = RunQxcad(dir, "HMTest NOSUCH");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(dir.readFile("err.txt").find("unknown command \"NOSUCH\""), std::string::npos);
}

TEST(Qxcad, ReadsCommandsAtItsPromptWhenGivenNone) {
    TempFolder dir;
    const ProcessRun run = RunQxcad(dir, "", "help\\nHMTest\\nquit\\nHMLogin\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("HMUpdate"), std::string::npos);
    EXPECT_EQ(run.out.find("登录"), std::string::npos);  // nothing runs after QUIT
}

TEST(Qxcad, LogsInFromAnswersOnStandardInputThenSilentlyFromTheStoredLogin) {
    TempFolder dir;
    ProcessRun run = RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("登录云端成功！"), std::string::npos);
    EXPECT_EQ(run.out.find("secret"), std::string::npos);
    EXPECT_EQ(dir.readFile("err.txt").find("secret"), std::string::npos);

    run = RunQxcad(dir, "HMUpdate");
    EXPECT_NE(run.out.find("登录云端成功！"), std::string::npos);
    EXPECT_EQ(dir.readFile("err.txt").find("Hexmoor credential"), std::string::npos);

    run = RunQxcad(dir, "HMLogin", "acme\\nann\\nwrong\\n");
    EXPECT_NE(run.out.find("登录云端失败！"), std::string::npos);
}

TEST(Qxcad, AModuleThatDoesNotLoadIsAClearFailure) {
    TempFolder dir;
    dir.writeFile("broken.so", "not a library");
    const ProcessRun run = RunQxcad(dir, "--module '" + dir.native() + "/broken.so' HMTest");
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(dir.readFile("err.txt").find("does not load"), std::string::npos);
}

TEST(Qxcad, XmmanageShowsTheCurrentProjectsDevicesAndDrawings) {
    TempFolder dir;
    EXPECT_NE(RunQxcad(dir, "xmmanage").out.find("no current project"), std::string::npos);
    dir.writeFile("p/P/P.itm", "");
    dir.writeFile("p/P/Hexmoor.xml", "");
    dir.writeFile("p/P/D1/d1.PRJ", "");
    dir.writeFile("p/P/D1/a.dwg", "");
    dir.writeFile("p/P/stray/x.prj", "");
    dir.writeFile("corvane/Data/recent.dat", (dir.logic() + u"p\\P\\P.itm").ToUtf8());
    const std::string out = RunQxcad(dir, "xmmanage").out;
    // The path is shown in the machine's own form, not as the logic holds it.
    EXPECT_NE(out.find(dir.native() + "/p/P/P.itm"), std::string::npos) << out;
    EXPECT_EQ(out.find('\\'), std::string::npos);
    EXPECT_NE(out.find("项目 P  [Hexmoor]"), std::string::npos);
    EXPECT_NE(out.find("设备 D1"), std::string::npos);  // named as the folder names it
    EXPECT_NE(out.find("a.dwg"), std::string::npos);
    EXPECT_EQ(out.find("stray"), std::string::npos);
}

TEST(Tools, QxcadAndQxinspectPrintTheirVersion) {
    TempFolder dir;
    for (const std::string tool : {"qxcad", "qxinspect"}) {
        SCOPED_TRACE(tool);
        const ProcessRun run = tool == "qxcad" ? RunQxcad(dir, "--version")
                                               : RunShellCommand(std::string(QX_BINARY_DIR) + "/bin/qxinspect --version");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, tool + " " + ProjectVersion() + "\n");
    }
}

// The project commands log in silently from the stored login and say plainly why they stop when there is
// nothing to work on.
TEST(QxcadProjectCommands, WithoutAProjectTheCloudKnowsEachCommandSaysSoAndTheRunSucceeds) {
    TempFolder dir;
    ASSERT_EQ(RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n").status, 0);
    dir.writeFile("corvane/Data/recent.dat", "");
    const ProcessRun run = RunQxcad(dir, "HMBomSubmit HMBomCmp HMUpdate HMXmCreate");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法提交明细！请选择提交项目。"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法进行比对！"), std::string::npos);
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法从Hexmoor调用明细！"), std::string::npos);
    // The centre has no project to make: nothing is made and the project manager is not called.
    EXPECT_NE(run.out.find("has no project"), std::string::npos);
    EXPECT_EQ(run.out.find("***"), std::string::npos);
    EXPECT_EQ(dir.readFile("corvane/Data/recent.dat"), "");
}
