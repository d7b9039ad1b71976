// qxcad run as a person runs it: as a process, with its exit status and its output; HMItmSubmit in it on the
// demo's sample project, the cabinet dialog answered by piped lines as a script answers it.
#include "common/ShellRun.h"
#include "common/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>

namespace {

using ProcessRun = ShellRun;

// qxcad run through the shell on an install folder below `dir`, with `input` on standard input; standard
// error is kept apart in err.txt of `dir`.
ShellRun RunQxcad(const TempFolder& dir, const std::string& args, const std::string& input = "") {
    return RunShellCommand("printf '" + input + "' | " + QX_BINARY_DIR + "/bin/qxcad --install-dir '" + dir.native() +
                           "/corvane' " + args + " 2>'" + dir.native() + "/err.txt'");
}

// The version as the build defines it, in one place: the project() line of the top-level CMakeLists.txt.
std::string ProjectVersion() {
    std::ifstream in(std::string(QX_SOURCE_DIR) + "/CMakeLists.txt");
    std::stringstream text;
    text << in.rdbuf();
    const std::string cmake = text.str();
    std::smatch match;
    if (!std::regex_search(cmake, match, std::regex(R"(project\(QxHMInterFace VERSION ([0-9.]+))"))) return "?";
    return match[1];
}

class QxcadItmSubmit : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string command = "/usr/bin/python3 '" + std::string(QX_SOURCE_DIR) +
                                    "/samples/make_sample_project.py' '" + dir.native() + "/corvane/My Projects' '" +
                                    dir.native() + "/corvane' >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_EQ(RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n").status, 0);
    }

    std::string project(const std::string& relative) const {
        return "corvane/My Projects/华东变电站/" + relative;
    }

    TempFolder dir;
};

} // namespace

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
    dir.writeFile("p/P/D\x1b]0;owned\x07/D\x1b]0;owned\x07.prj", "");
    dir.writeFile("corvane/Data/recent.dat", (dir.logic() + u"p\\P\\P.itm").ToUtf8());
    const std::string out = RunQxcad(dir, "xmmanage").out;
    // The path is shown in the machine's own form, not as the logic holds it.
    EXPECT_NE(out.find(dir.native() + "/p/P/P.itm"), std::string::npos) << out;
    EXPECT_EQ(out.find("p\\P\\P.itm"), std::string::npos);
    EXPECT_NE(out.find("项目 P  [Hexmoor]"), std::string::npos);
    EXPECT_NE(out.find("设备 D1"), std::string::npos);  // named as the folder names it
    EXPECT_NE(out.find("设备 D\\x1b]0;owned\\x07\n"), std::string::npos);  // never a raw control character
    EXPECT_EQ(out.find_first_of("\x1b\x07"), std::string::npos);
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

// OK sends the project to the embedded centre, CANCEL or the end of input sends nothing.
TEST_F(QxcadItmSubmit, OkSendsTheProjectWithTheNamesTypedIntoTheDialog) {
    const ProcessRun run = RunQxcad(dir, "HMItmSubmit HMBomCmp", "2 3 Feeder-2\\n3 5 800x600\\nOK\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("[Corvane] Corvane新建项目提交成功！"), std::string::npos) << run.out;
    EXPECT_NE(dir.readFile("err.txt").find("屏柜属性设置"), std::string::npos);  // the dialog was shown
    EXPECT_NE(dir.readFile(project("K02/K02.prj")).find("Feeder-2"), std::string::npos);
    EXPECT_NE(dir.readFile(project("K03/K03.prj")).find("800x600"), std::string::npos);
    EXPECT_TRUE(dir.exists(project("Hexmoor.xml")));
    EXPECT_TRUE(dir.exists(project("K01/Hexmoor.xml")));
    // The centre now holds the three devices with the rows the drawings give.
    EXPECT_NE(run.out.find("BOM comparison: 3 devices, 0 differ from the centre."), std::string::npos) << run.out;
}

TEST_F(QxcadItmSubmit, CancelOrTheEndOfInputSendsNothingAndLeavesThePrjFiles) {
    const std::string before = dir.readFile(project("K02/K02.prj"));
    ProcessRun run = RunQxcad(dir, "HMItmSubmit", "2 3 Feeder-2\\nCANCEL\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find("[Corvane]"), std::string::npos) << run.out;
    run = RunQxcad(dir, "HMItmSubmit", "2 3 Feeder-2\\n");
    EXPECT_EQ(run.out.find("[Corvane]"), std::string::npos) << run.out;
    EXPECT_EQ(dir.readFile(project("K02/K02.prj")), before);
    EXPECT_FALSE(dir.exists(project("Hexmoor.xml")));
}

TEST_F(QxcadItmSubmit, AFailedCheckKeepsTheDialogForTheNextLines) {
    const ProcessRun run = RunQxcad(dir, "HMItmSubmit", "1 2 K.1\\nOK\\n1 2 K01\\nOK\\n");
    EXPECT_NE(run.out.find("[Corvane] 设备 K01 柜编号属性有非法字符存在！"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("[Corvane] Corvane新建项目提交成功！"), std::string::npos);
}
