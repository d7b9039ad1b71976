// The console's questions answered from a file on standard input, as a script answers them.
#include "common/TempFolder.h"
#include "platform/host/Prompts.h"

#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iostream>
#include <unistd.h>

namespace {

// Standard input reads `answers` and standard error goes to a file, for as long as it lives.
class ConsoleAnswers {
public:
    ConsoleAnswers(const TempFolder& dir, const std::string& answers)
        : m_dir(dir), m_savedInput(::dup(STDIN_FILENO)), m_savedError(::dup(STDERR_FILENO)) {
        dir.writeFile("answers.txt", answers);
        redirect((dir.native() + "/answers.txt").c_str(), O_RDONLY, STDIN_FILENO);
        std::clearerr(stdin);
        redirect((dir.native() + "/shown.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    }
    ~ConsoleAnswers() {
        std::fflush(stderr);
        ::dup2(m_savedInput, STDIN_FILENO);
        ::dup2(m_savedError, STDERR_FILENO);
        ::close(m_savedInput);
        ::close(m_savedError);
        std::clearerr(stdin);
    }
    ConsoleAnswers(const ConsoleAnswers&) = delete;
    ConsoleAnswers& operator=(const ConsoleAnswers&) = delete;

    std::string shown() const {
        std::cerr.flush();
        std::fflush(stderr);
        return m_dir.readFile("shown.txt");
    }

private:
    static void redirect(const char* path, int flags, int target) {
        const int file = ::open(path, flags, 0600);
        ::dup2(file, target);
        ::close(file);
    }

    const TempFolder& m_dir;
    int m_savedInput;
    int m_savedError;
};

} // namespace

TEST(ConsolePrompts, NamesFromTheCentreAreShownEscapedAndAPipedLineIsBounded) {
    TempFolder dir;
    const ConsoleAnswers console(dir, "2\n" + std::string(1'500'000, 'x') + "\nlast\n");
    const CStringArray projects{u"华东变电站", u"站\x1b]0;owned\x07\x1b[2J"};
    EXPECT_EQ(HostPrompts().AskChoice(u"Hexmoor project", projects), 1);
    const auto longLine = HostPrompts().AskText(u"Hexmoor user");
    ASSERT_TRUE(longLine.has_value());
    EXPECT_EQ(longLine->GetLength(), 1 << 20);
    EXPECT_EQ(HostPrompts().AskText(u"name\r"), CString(u"last"));
    EXPECT_EQ(HostPrompts().AskText(u"more"), std::nullopt);  // the end of input cancels

    const std::string shown = std::string(console.shown(), 0, 300);
    EXPECT_EQ(shown, "Hexmoor project\n  1) 华东变电站\n  2) 站\\x1b]0;owned\\x07\\x1b[2J\nNumber: \n"
                     "Hexmoor user: \nname\\x0d: \nmore: \n");
}
