// The host's one reader of standard input.
#include "platform/host/ConsoleInput.h"

#include "platform/host/LineEditor.h"
#include "platform/host/Progress.h"
#include "support/PrintableText.h"

#include <cstdio>
#include <string>
#include <termios.h>
#include <unistd.h>

namespace {

// Keys one by one without echo and without signals, for as long as it lives.
class SecretKeys {
public:
    SecretKeys() {
        if (::tcgetattr(STDIN_FILENO, &m_saved) != 0) return;
        termios quiet = m_saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON | ISIG);
        quiet.c_cc[VMIN] = 1;
        quiet.c_cc[VTIME] = 0;
        m_active = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet) == 0;
    }
    ~SecretKeys() {
        if (!m_active) return;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_saved);
        std::fputc('\n', stderr);
    }
    SecretKeys(const SecretKeys&) = delete;
    SecretKeys& operator=(const SecretKeys&) = delete;

private:
    termios m_saved{};
    bool m_active = false;
};

bool onTerminal() { return ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1; }

void showPrompt(const CString& prompt) {
    std::fflush(stdout);
    ClearProgressLine();
    if (prompt.IsEmpty()) return;
    const std::string text = QxPrintable(prompt).ToUtf8();
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

// No command, answer or dialog line is near this long; what a stream gives beyond it is passed over.
constexpr size_t kLongestLine = 1 << 20;

// A line of a pipe or a file, through the C library's buffer that typed commands share.
ConsoleRead readPlainLine() {
    std::string line;
    int ch;
    while ((ch = std::getchar()) != EOF && ch != '\n')
        if (line.size() < kLongestLine) line += static_cast<char>(ch);
    if (ch == EOF && line.empty()) return {};
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return {ConsoleRead::End::Line, CString::FromUtf8(line)};
}

// Drops the last UTF-8 character of a line.
void eraseLastCharacter(std::string& line) {
    while (!line.empty()) {
        const unsigned char last = static_cast<unsigned char>(line.back());
        line.pop_back();
        if ((last & 0xC0) != 0x80) return;
    }
}

// The keys are taken from the terminal before the prompt shows, so that nothing typed after it is lost.
ConsoleRead readSecretKeys(const CString& prompt) {
    const SecretKeys keys;
    showPrompt(prompt);
    std::string line;
    for (;;) {
        char key = 0;
        if (::read(STDIN_FILENO, &key, 1) != 1) return line.empty() ? ConsoleRead{} : ConsoleRead{ConsoleRead::End::Line, CString::FromUtf8(line)};
        if (key == '\n' || key == '\r') return {ConsoleRead::End::Line, CString::FromUtf8(line)};
        if (key == 0x03) return {ConsoleRead::End::Interrupted, {}};
        if (key == 0x04 && line.empty()) return {};
        if (key == 0x7F || key == 0x08) eraseLastCharacter(line);
        else if (key == 0x15) line.clear();
        else if (static_cast<unsigned char>(key) >= 0x20 && line.size() < 4096) line += key;
    }
}

LineEditor& lineEditor() {
    static LineEditor editor;
    return editor;
}

} // namespace

bool ConsoleIsInteractive() { return ::isatty(STDIN_FILENO) == 1; }

ConsoleRead ReadConsoleInput(const CString& prompt, ConsoleHistory history) {
    if (!onTerminal() || !lineEditor().usable()) {
        showPrompt(prompt);
        return readPlainLine();
    }
    std::fflush(stdout);
    ClearProgressLine();
    const LineEditor::Result typed =
        lineEditor().read(QxPrintable(prompt).ToUtf8(), static_cast<int>(history));
    switch (typed.end) {
    case LineEditor::End::Line: return {ConsoleRead::End::Line, CString::FromUtf8(typed.utf8)};
    case LineEditor::End::Interrupted: return {ConsoleRead::End::Interrupted, {}};
    case LineEditor::End::EndOfInput: break;
    }
    return {};
}

ConsoleRead ReadConsoleSecret(const CString& prompt) {
    if (ConsoleIsInteractive()) return readSecretKeys(prompt);
    showPrompt(prompt);
    return readPlainLine();
}

std::optional<CString> ReadConsoleLine(const CString& prompt, ConsoleHistory history) {
    ConsoleRead read = ReadConsoleInput(prompt, history);
    if (read.end != ConsoleRead::End::Line) return std::nullopt;
    return std::move(read.text);
}
