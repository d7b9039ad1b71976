// qxcad's dialog service.
#include "TerminalDialogs.h"

#include "CabinetDialogTerminal.h"
#include "platform/host/ConsoleInput.h"

#include <iostream>

namespace {

class TerminalDialogs final : public IDialogService {
public:
    void RunModal(CAdUiBaseDialog& dialog) override {
        std::cout.flush();
        auto* cabinets = dynamic_cast<CSetCabInfo*>(&dialog);
        if (!cabinets) {
            std::cerr << "qxcad: this dialog cannot be shown on the terminal; it is cancelled\n";
            return;
        }
        CabinetDialogTerminal terminal(*cabinets, [] { return ReadConsoleLine(); }, std::cerr,
                                       ConsoleIsInteractive());
        terminal.Run();
    }
};

} // namespace

void InstallTerminalDialogs() {
    static TerminalDialogs dialogs;
    SetHostDialogs(&dialogs);
}
