// Progress lines on a terminal.
#include "platform/host/Progress.h"

#include <cstdio>
#include <unistd.h>

void ShowProgressLine(const CString& text) {
    static const bool onTerminal = ::isatty(STDERR_FILENO) == 1;
    if (!onTerminal) return;
    const std::string line = text.ToUtf8() + "\n";
    std::fflush(stdout);
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}
