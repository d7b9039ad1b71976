// Runs what the person types.
#include "CommandRunner.h"

#include "HostCommands.h"
#include "platform/host/CommandLine.h"
#include "platform/host/ConsoleInput.h"

#include <iostream>

namespace {

void reportUnknown(const CString& name) {
    std::cerr << "qxcad: unknown command \"" << name << "\" (HELP lists the commands)\n";
}

} // namespace

CommandRunner::CommandRunner() { RegisterHostCommands(); }

bool CommandRunner::runLine(const CString& line) { return RunHostCommandLine(line, reportUnknown); }

bool CommandRunner::runPrompt() {
    bool allKnown = true;
    for (;;) {
        std::cerr << "Command: " << std::flush;
        const auto line = ReadConsoleLine();
        if (!line) break;
        CString text = *line;
        text.Trim();
        if (text.EqualsNoCase(u"quit") || text.EqualsNoCase(u"exit")) break;
        allKnown = runLine(text) && allKnown;
    }
    if (ConsoleIsInteractive()) std::cerr << '\n';
    return allKnown;
}
