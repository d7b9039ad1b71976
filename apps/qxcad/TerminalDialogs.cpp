// qxcad's dialog service.
#include "TerminalDialogs.h"

#include "CabinetDialogTerminal.h"
#include "platform/host/ConsoleInput.h"
#include "platform/host/Progress.h"

#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

// The dialog is shown on standard error: its size is the one that counts.
DialogScreenSize terminalSize() {
    winsize size{};
    if (::isatty(STDERR_FILENO) != 1 || ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0) return {};
    return {size.ws_col, size.ws_row};
}

class TerminalDialogs final : public IDialogService {
public:
    void RunModal(CAdUiBaseDialog& dialog) override {
        std::cout.flush();
        ClearProgressLine();
        auto* cabinets = dynamic_cast<CSetCabInfo*>(&dialog);
        if (!cabinets) {
            std::cerr << "qxcad: this dialog cannot be shown on the terminal; it is cancelled\n";
            return;
        }
        CabinetDialogTerminal terminal(
            *cabinets, [](const CString& prompt) { return ReadConsoleLine(prompt, ConsoleHistory::Dialog); }, std::cerr,
            ConsoleIsInteractive(), terminalSize());
        terminal.Run();
    }
};

} // namespace

void InstallTerminalDialogs() {
    static TerminalDialogs dialogs;
    SetHostDialogs(&dialogs);
}
