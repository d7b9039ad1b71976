// qxcad and qxlib at a real terminal, driven by the keys a person presses: what the screen shows and what
// reaches the files must agree, byte for byte.
#include "SampleInstall.h"
#include "TextChecks.h"
#include "TmuxTerminal.h"
#include "repository/FtpLoginFile.h"
#include "support/Encoding.h"

#include <gtest/gtest.h>

namespace {

int occurrences(const std::string& text, const std::string& part) {
    int found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

const std::string kBin = std::string(QX_BINARY_DIR) + "/bin/";

} // namespace

// The locale says nothing of UTF-8 (LANG=C): the line editor still edits whole Chinese characters.
TEST(TerminalSession, QxcadEditsLinesKeepsHistoryAndStoresWhatTheScreenShows) {
    TempFolder dir;
    ASSERT_TRUE(LayOutSampleProjectAndLogIn(dir));
    const std::string before = dir.readFile("corvane/My Projects/华东变电站/K02/K02.prj");
    {
        TmuxTerminal terminal(dir.native(), "env -u LC_ALL LANG=C " + kBin + "qxcad --install-dir corvane");
        const std::string screen = terminal.play({
            {"", {}, "Command: "},
            {"abc", {"C-a", "C-c"}, "Command: ", 2},  // gives up the line
            {"LP中文", {"BSpace", "BSpace", "C-a"}, ""},
            {"HE", {"C-e", "Enter"}, "HMUpdate"},
            {"", {"Up", "Enter"}, "HMUpdate", 2},
            {"HMItmSubmit", {"Enter"}, "屏柜属性设置> "},
            {"1 3 进线柜", {"Left"}, ""},
            {"X", {"Enter"}, "屏柜属性设置> ", 2},
            {"2 3 a", {"C-v", "Escape"}, ""},  // a raw ESC in the text
            {"b", {"Enter"}, "was not typed"},
            {"", {"Up", "Up", "BSpace"}, ""},  // the line before, less its last character
            {"柜2", {"Enter"}, "进线X柜2 "},
            {"OK", {"Enter"}, "新建项目提交成功"},
            {"", {"C-d"}, "[exit 0]"},
        });
        EXPECT_EQ(occurrences(screen, "Command: HELP"), 2) << screen;
        expectShows(screen, {"[exit 0]", "Command: abc\nCommand: HELP", "A cell takes no control characters: \"a\\x1bb\" was not typed.",
                             "> 1 | K01        | K01      | 进线X柜2 | KYN28A-12 |"});
        // The progress of the walk was shown in place and cleared: nothing of it stays, nothing is glued to it.
        expectNever(screen, {"中文", "unknown command", "Not understood", "reading its drawings"});
        expectShows(dir.readFile("raw.log"), {"\rdevice K01: reading its drawings\x1b[K", "\r\x1b[K"});
    }
    expectShows(dir.readFile("corvane/My Projects/华东变电站/K01/K01.prj"), {EncodeLegacy(u"进线X柜2")});
    expectShows(dir.readFile("corvane/My Projects/华东变电站/K01/Hexmoor.xml"), {"进线X柜2"});
    EXPECT_EQ(dir.readFile("corvane/My Projects/华东变电站/K02/K02.prj"), before);
}

// A secret is typed without echo; Ctrl-C gives it up and leaves the terminal echoing again.
TEST(TerminalSession, QxlibAsksForThePasswordWithoutEchoAndNamesTheLocalFileNatively) {
    TempFolder dir;
    const std::string setup = kBin + "qxlib --install-dir corvane setup 127.0.0.1 2121 / --user bob";
    TmuxTerminal terminal(dir.native(), setup + "; stty -a | grep -o -- '-\\\\?echo ' | head -1; " + setup);
    const std::string screen = terminal.play({
        {"", {}, "Password of bob on 127.0.0.1: "},
        {"wrong", {"C-c"}, "Password of bob on 127.0.0.1: ", 2},
        {"se中", {"BSpace"}, ""},
        {"cret", {"Enter"}, "[exit 0]"},
    });
    expectShows(screen, {"qxlib: setup cancelled\necho \n", "wrote " + dir.native() + "/corvane/LocalData/QxFTPLoginInfo.sys\n"});
    expectNever(screen, {"secret", "wrong"});
    FtpLoginLines lines;
    ASSERT_TRUE(ReadLoginInfo(dir.logic() + u"corvane\\LocalData\\QxFTPLoginInfo.sys", lines));
    EXPECT_EQ(lines[kLoginPassword], u"secret");
}
