// Runs what the person types.
#include "CommandRunner.h"

#include "HostCommands.h"
#include "platform/host/CommandLine.h"
#include "platform/host/ConsoleInput.h"
#include "platform/host/Progress.h"
#include "support/PrintableText.h"

#include <iostream>

namespace {

void reportUnknown(const CString& name) {
    std::cerr << "qxcad: unknown command \"" << QxPrintable(name) << "\" (HELP lists the commands)\n";
}

} // namespace

CommandRunner::CommandRunner() { RegisterHostCommands(); }

bool CommandRunner::runLine(const CString& line) {
    const bool known = RunHostCommandLine(line, reportUnknown);
    ClearProgressLine();
    return known;
}

// Ctrl-C at the prompt gives up the typed line only; the end of input (Ctrl-D) ends the session.
bool CommandRunner::runPrompt() {
    bool allKnown = true;
    for (;;) {
        const ConsoleRead read = ReadConsoleInput(u"Command: ", ConsoleHistory::Commands);
        if (read.end == ConsoleRead::End::EndOfInput) break;
        if (read.end == ConsoleRead::End::Interrupted) continue;
        CString text = read.text;
        text.Trim();
        if (text.EqualsNoCase(u"quit") || text.EqualsNoCase(u"exit")) break;
        allKnown = runLine(text) && allKnown;
    }
    return allKnown;
}
