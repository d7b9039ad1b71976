// qxcad run as a person runs it: as a process, with its exit status and its output; HMItmSubmit in it on the
// demo's sample project, the cabinet dialog answered by piped lines as a script answers it.
#include "SampleInstall.h"
#include "TextChecks.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>

namespace {

using ProcessRun = ShellRun;

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

} // namespace

// Runs on a fresh install folder: the exit status, a text the run shows, and one it never shows.
TEST(Qxcad, RunsTheCommandsOfItsCommandLineOrPromptAndFailsClearly) {
    const struct { const char* what; std::string args; const char* input; int status; const char* shown; const char* notShown; } rows[] = {
        {"commands on the command line", "HMTest HELP", "", 0, "HMBomSubmit", "unknown command"},
        {"an unknown command", "HMTest NOSUCH", "", 1, "unknown command \"NOSUCH\"", "HMBomSubmit"},
        {"commands at the prompt, none after QUIT", "", "help\\nHMTest\\nquit\\nHMLogin\\n", 0, "HMUpdate", "登录"},
        {"a module that does not load", "--module '" + std::string(QX_SOURCE_DIR) + "/CMakeLists.txt' HMTest", "", 2, "does not load", "HMBomSubmit"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        TempFolder dir;
        const ProcessRun run = RunQxcad(dir, row.args, row.input);
        const std::string err = dir.readFile("err.txt");
        EXPECT_EQ(run.status, row.status);
        expectShows(row.status == 0 ? run.out : err, {row.shown});  // a failure is told on standard error
        expectNever(run.out + err, {row.notShown});
        if (row.status == 0) {
            EXPECT_TRUE(dir.exists("corvane/Data"));  // a fresh install folder is laid out
        }
    }
}

// Logged in from answers on standard input, the project commands log in silently from the stored login and
// say plainly why they stop when there is nothing to work on.
TEST(Qxcad, LogsInFromStandardInputThenSilentlyAndTheProjectCommandsSayWhyTheyStop) {
    TempFolder dir;
    ProcessRun run = RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n");
    EXPECT_EQ(run.status, 0);
    expectShows(run.out, {"登录云端成功！"});
    expectNever(run.out + dir.readFile("err.txt"), {"secret"});
    dir.writeFile("corvane/Data/recent.dat", "");
    run = RunQxcad(dir, "HMBomSubmit HMBomCmp HMUpdate HMXmCreate");
    EXPECT_EQ(run.status, 0);
    // The centre has no project to make: nothing is made and the project manager is not called.
    expectShows(run.out, {"登录云端成功！", "项目的Hexmoor相关信息不存在，无法提交明细！请选择提交项目。",
                          "项目的Hexmoor相关信息不存在，无法进行比对！", "项目的Hexmoor相关信息不存在，无法从Hexmoor调用明细！",
                          "has no project"});
    expectNever(run.out, {"***"});
    expectNever(dir.readFile("err.txt"), {"Hexmoor credential"});
    EXPECT_EQ(dir.readFile("corvane/Data/recent.dat"), "");
    expectShows(RunQxcad(dir, "HMLogin", "acme\\nann\\nwrong\\n").out, {"登录云端失败！"});
}

TEST(Qxcad, XmmanageShowsTheCurrentProjectsDevicesAndDrawings) {
    TempFolder dir;
    expectShows(RunQxcad(dir, "xmmanage").out, {"no current project"});
    dir.writeFile("p/P/P.itm", "");
    dir.writeFile("p/P/Hexmoor.xml", "");
    dir.writeFile("p/P/D1/d1.PRJ", "");
    dir.writeFile("p/P/D1/a.dwg", "");
    dir.writeFile("p/P/stray/x.prj", "");
    dir.writeFile("p/P/D\x1b]0;owned\x07/D\x1b]0;owned\x07.prj", "");
    dir.writeFile("corvane/Data/recent.dat", (dir.logic() + u"p\\P\\P.itm").ToUtf8());
    const std::string out = RunQxcad(dir, "xmmanage").out;
    // The path is shown in the machine's own form, not as the logic holds it.
    // Devices are named as the folder names them, never with a raw control character.
    expectShows(out, {dir.native() + "/p/P/P.itm", "项目 P  [Hexmoor]", "设备 D1", "设备 D\\x1b]0;owned\\x07\n", "a.dwg"});
    expectNever(out, {"p\\P\\P.itm", "\x1b", "\x07", "stray"});
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

// On the demo's sample project: CANCEL or the end of input sends nothing; a failed check keeps the dialog for
// the next lines; OK sends the project to the embedded centre with the names typed into the dialog.
TEST(QxcadItmSubmit, OnlyOkSendsTheProjectWithTheNamesTypedIntoTheDialog) {
    TempFolder dir;
    ASSERT_TRUE(LayOutSampleProjectAndLogIn(dir));
    const std::string project = "corvane/My Projects/华东变电站/";
    const std::string before = dir.readFile(project + "K02/K02.prj");
    for (const char* input : {"2 3 Feeder-2\\nCANCEL\\n", "2 3 Feeder-2\\n"}) {
        const ProcessRun run = RunQxcad(dir, "HMItmSubmit", input);
        EXPECT_EQ(run.status, 0);
        expectNever(run.out, {"[Corvane]"});
    }
    EXPECT_EQ(dir.readFile(project + "K02/K02.prj"), before);
    EXPECT_FALSE(dir.exists(project + "Hexmoor.xml"));

    const std::string answers = "1 2 K.1\\nOK\\n1 2 K01\\n2 3 Feeder-2\\n3 5 800x600\\nOK\\n";
    const ProcessRun run = RunQxcad(dir, "HMItmSubmit HMBomCmp", answers);
    EXPECT_EQ(run.status, 0);
    // The centre now holds the three devices with the rows the drawings give.
    expectShows(run.out, {"[Corvane] 设备 K01 柜编号属性有非法字符存在！", "[Corvane] Corvane新建项目提交成功！",
                          "BOM comparison: 3 devices, 0 differ from the centre."});
    expectShows(dir.readFile("err.txt"), {"屏柜属性设置"});  // the dialog was shown
    expectShows(dir.readFile(project + "K02/K02.prj"), {"Feeder-2"});
    expectShows(dir.readFile(project + "K03/K03.prj"), {"800x600"});
    EXPECT_TRUE(dir.exists(project + "Hexmoor.xml") && dir.exists(project + "K01/Hexmoor.xml"));
}
