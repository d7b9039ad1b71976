// Runs what the person types.
#include "CommandRunner.h"

#include "HostCommands.h"
#include "platform/host/CommandStack.h"
#include "platform/host/ConsoleInput.h"
#include "platform/host/HostOutput.h"

#include <iostream>

namespace {

std::vector<CString> splitWords(const CString& line) {
    std::vector<CString> words;
    CString word;
    for (char16_t ch : line.str()) {
        if (IsQxBlank(ch)) {
            if (!word.IsEmpty()) words.push_back(word);
            word.Empty();
        } else {
            word += ch;
        }
    }
    if (!word.IsEmpty()) words.push_back(word);
    return words;
}

} // namespace

CommandRunner::CommandRunner() { RegisterHostCommands(); }

bool CommandRunner::run(const CString& name) {
    const auto command = acedRegCmds()->lookup(name);
    if (!command) {
        std::cerr << "qxcad: unknown command \"" << name << "\" (HELP lists the commands)\n";
        return false;
    }
    command->handler();
    EnsureConsoleLineEnd();
    // Strings a command queued run after it, as the host runs them; they do not count as the person's.
    for (const CString& queued : TakeQueuedCommandStrings())
        for (const CString& word : splitWords(queued)) run(word);
    return true;
}

bool CommandRunner::runLine(const CString& line) {
    bool allKnown = true;
    for (const CString& word : splitWords(line)) allKnown = run(word) && allKnown;
    return allKnown;
}

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
