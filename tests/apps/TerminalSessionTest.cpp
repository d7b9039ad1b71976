// qxcad and qxlib at a real terminal, driven by the keys a person presses: what the screen shows and what
// reaches the files must agree, byte for byte.
#include "TmuxTerminal.h"
#include "common/TempFolder.h"
#include "repository/FtpLoginFile.h"
#include "support/Encoding.h"

#include <cstdlib>
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
    ASSERT_EQ(std::system(("/usr/bin/python3 '" + std::string(QX_SOURCE_DIR) + "/samples/make_sample_project.py' '" +
                           dir.native() + "/corvane/My Projects' '" + dir.native() + "/corvane' >/dev/null").c_str()),
              0);
    ASSERT_EQ(RunShellCommand("printf 'acme\\nann\\nsecret\\n' | " + kBin + "qxcad --install-dir '" + dir.native() +
                              "/corvane' HMLogin >/dev/null 2>&1")
                  .status,
              0);
    const std::string before = dir.readFile("corvane/My Projects/华东变电站/K02/K02.prj");
    {
        TmuxTerminal terminal(dir.native(), "env -u LC_ALL LANG=C " + kBin + "qxcad --install-dir corvane");
        terminal.waitFor("Command: ");
        terminal.type("abc");
        terminal.press({"C-a", "C-c"});  // gives up the line
        terminal.waitFor("Command: ", 2);
        terminal.type("LP中文");
        terminal.press({"BSpace", "BSpace", "C-a"});
        terminal.type("HE");
        terminal.press({"C-e", "Enter"});
        terminal.waitFor("HMUpdate");
        terminal.press({"Up", "Enter"});
        terminal.waitFor("HMUpdate", 2);
        terminal.type("HMItmSubmit");
        terminal.press({"Enter"});
        terminal.waitFor("屏柜属性设置> ");
        terminal.type("1 3 进线柜");
        terminal.press({"Left"});
        terminal.type("X");
        terminal.press({"Enter"});
        terminal.waitFor("屏柜属性设置> ", 2);
        terminal.type("2 3 a");
        terminal.press({"C-v", "Escape"});  // a raw ESC in the text
        terminal.type("b");
        terminal.press({"Enter"});
        terminal.waitFor("was not typed");
        terminal.press({"Up", "Up", "BSpace"});  // the line before, less its last character
        terminal.type("柜2");
        terminal.press({"Enter"});
        terminal.waitFor("进线X柜2 ");
        terminal.type("OK");
        terminal.press({"Enter"});
        terminal.waitFor("新建项目提交成功");
        terminal.press({"C-d"});
        const std::string screen = terminal.waitFor("[exit 0]");

        EXPECT_NE(screen.find("[exit 0]"), std::string::npos) << screen;
        EXPECT_EQ(occurrences(screen, "Command: HELP"), 2) << screen;
        EXPECT_EQ(occurrences(screen, "中文"), 0);
        EXPECT_NE(screen.find("Command: abc\nCommand: HELP"), std::string::npos);
        EXPECT_EQ(screen.find("unknown command"), std::string::npos);
        EXPECT_EQ(screen.find("Not understood"), std::string::npos);
        EXPECT_NE(screen.find("A cell takes no control characters: \"a\\x1bb\" was not typed."), std::string::npos);
        EXPECT_NE(screen.find("> 1 | K01        | K01      | 进线X柜2 | KYN28A-12 |"), std::string::npos) << screen;
        // The progress of the walk was shown in place and cleared: nothing of it stays, nothing is glued to it.
        EXPECT_EQ(screen.find("reading its drawings"), std::string::npos);
        const std::string raw = dir.readFile("raw.log");
        EXPECT_NE(raw.find("\rdevice K01: reading its drawings\x1b[K"), std::string::npos);
        EXPECT_NE(raw.find("\r\x1b[K"), std::string::npos);
    }
    EXPECT_NE(dir.readFile("corvane/My Projects/华东变电站/K01/K01.prj").find(EncodeLegacy(u"进线X柜2")),
              std::string::npos);
    EXPECT_EQ(dir.readFile("corvane/My Projects/华东变电站/K02/K02.prj"), before);
    EXPECT_NE(dir.readFile("corvane/My Projects/华东变电站/K01/Hexmoor.xml").find("进线X柜2"), std::string::npos);
}

// A secret is typed without echo; Ctrl-C gives it up and leaves the terminal echoing again.
TEST(TerminalSession, QxlibAsksForThePasswordWithoutEchoAndNamesTheLocalFileNatively) {
    TempFolder dir;
    const std::string setup = kBin + "qxlib --install-dir corvane setup 127.0.0.1 2121 / --user bob";
    TmuxTerminal terminal(dir.native(), setup + "; stty -a | grep -o -- '-\\\\?echo ' | head -1; " + setup);
    terminal.waitFor("Password of bob on 127.0.0.1: ");
    terminal.type("wrong");
    terminal.press({"C-c"});
    terminal.waitFor("Password of bob on 127.0.0.1: ", 2);
    terminal.type("se中");
    terminal.press({"BSpace"});
    terminal.type("cret");
    terminal.press({"Enter"});
    const std::string screen = terminal.waitFor("[exit 0]");

    EXPECT_NE(screen.find("qxlib: setup cancelled\necho \n"), std::string::npos) << screen;
    EXPECT_NE(screen.find("wrote " + dir.native() + "/corvane/LocalData/QxFTPLoginInfo.sys\n"), std::string::npos)
        << screen;
    EXPECT_EQ(screen.find("secret"), std::string::npos);
    EXPECT_EQ(screen.find("wrong"), std::string::npos);
    FtpLoginLines lines;
    ASSERT_TRUE(ReadLoginInfo(dir.logic() + u"corvane\\LocalData\\QxFTPLoginInfo.sys", lines));
    EXPECT_EQ(lines[kLoginPassword], u"secret");
}
