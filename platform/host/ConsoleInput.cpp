// The host's one reader of standard input.
#include "platform/host/ConsoleInput.h"

#include <cstdio>
#include <string>
#include <termios.h>
#include <unistd.h>

namespace {

// Turns terminal echo off for as long as it lives.
class EchoOff {
public:
    EchoOff() {
        if (::tcgetattr(STDIN_FILENO, &m_saved) != 0) return;
        termios quiet = m_saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        m_active = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet) == 0;
    }
    ~EchoOff() {
        if (!m_active) return;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_saved);
        std::fputc('\n', stderr);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    termios m_saved{};
    bool m_active = false;
};

} // namespace

bool ConsoleIsInteractive() { return ::isatty(STDIN_FILENO) == 1; }

std::optional<CString> ReadConsoleLine(bool secret) {
    std::optional<EchoOff> echoOff;
    if (secret && ConsoleIsInteractive()) echoOff.emplace();
    std::string line;
    int ch;
    while ((ch = std::getchar()) != EOF && ch != '\n') line += static_cast<char>(ch);
    if (ch == EOF && line.empty()) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return CString::FromUtf8(line);
}
