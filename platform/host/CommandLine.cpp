// How the host runs a command line.
#include "platform/host/CommandLine.h"

#include "platform/host/CommandStack.h"
#include "platform/host/Documents.h"
#include "platform/host/HostOutput.h"

std::vector<CString> SplitCommandWords(const CString& line) {
    std::vector<CString> words;
    CString word;
    for (char16_t ch : line.str()) {
        if (!IsQxBlank(ch)) {
            word += ch;
            continue;
        }
        if (!word.IsEmpty()) words.push_back(word);
        word.Empty();
    }
    if (!word.IsEmpty()) words.push_back(word);
    return words;
}

bool RunHostCommand(const CString& name, const std::function<void(const CString&)>& unknown) {
    const auto command = acedRegCmds()->lookup(name);
    if (!command) {
        unknown(name);
        return false;
    }
    command->handler();
    EnsureConsoleLineEnd();
    for (const PendingCommand& queued : acDocManagerPtr()->TakePendingCommands())
        for (const CString& word : SplitCommandWords(queued.text)) RunHostCommand(word, unknown);
    return true;
}

bool RunHostCommandLine(const CString& line, const std::function<void(const CString&)>& unknown) {
    bool allKnown = true;
    for (const CString& word : SplitCommandWords(line)) allKnown = RunHostCommand(word, unknown) && allKnown;
    return allKnown;
}
