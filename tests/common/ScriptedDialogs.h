// Runs the host's dialogs with what a test gives for each, in order; a dialog with nothing left for it is
// cancelled, as an end of input cancels it on the terminal.
#pragma once

#include "platform/host/Dialogs.h"

#include <deque>
#include <functional>

class ScriptedDialogs final : public IDialogService {
public:
    using Action = std::function<void(CAdUiBaseDialog&)>;

    ScriptedDialogs() { SetHostDialogs(this); }
    ~ScriptedDialogs() override { SetHostDialogs(nullptr); }
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    void RunModal(CAdUiBaseDialog& dialog) override {
        ++runs;
        if (actions.empty()) return;
        const Action action = actions.front();
        actions.pop_front();
        action(dialog);
    }

    std::deque<Action> actions;
    int runs = 0;
};
