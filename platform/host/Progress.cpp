// The progress line on a terminal.
#include "platform/host/Progress.h"

#include "platform/host/HostOutput.h"
#include "support/DisplayWidth.h"
#include "support/PrintableText.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

struct ProgressState {
    bool onTerminal = ::isatty(STDERR_FILENO) == 1;
    bool shown = false;
};

ProgressState& progress() {
    static ProgressState state;
    return state;
}

// A line as wide as the terminal would wrap, and \r would then rewrite only its last part.
int terminalColumns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1) return size.ws_col;
    return 80;
}

void write(const std::string& bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}

} // namespace

void ShowProgressLine(const CString& text) {
    ProgressState& state = progress();
    if (!state.onTerminal) return;
    // A line the module left open on the same screen would have the progress glued to it.
    if (::isatty(STDOUT_FILENO) == 1) EnsureConsoleLineEnd();
    CString shown = QxPrintable(text);
    const int room = terminalColumns() - 1;
    if (QxDisplayWidth(shown) > room) shown = QxFitToWidth(shown, room);
    write("\r" + shown.ToUtf8() + "\x1b[K");
    state.shown = true;
}

void ClearProgressLine() {
    ProgressState& state = progress();
    if (!state.shown) return;
    write("\r\x1b[K");
    state.shown = false;
}
