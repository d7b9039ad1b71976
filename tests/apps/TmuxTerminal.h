// A real terminal for the programs under test: a private tmux server runs one command in a window of the
// given size; keys are sent as a person presses them, and what the terminal shows is read back.
#pragma once

#include "common/ShellRun.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

// One step of a person at the keyboard: text typed, then keys pressed, then what the screen must come to show
// `count` times (nothing to wait for when empty).
struct KeyStep {
    std::string typed;
    std::vector<std::string> keys;
    std::string shows;
    int count = 1;
};

class TmuxTerminal {
public:
    // `command` runs through sh in `folder`; its exit status is shown as "[exit N]" when it ends. Every byte
    // the program writes is also kept in `folder`/raw.log.
    TmuxTerminal(const std::string& folder, const std::string& command, int columns = 100, int rows = 40)
        : m_tmux("tmux -u -f /dev/null -S '" + folder + "/tmux.socket' ") {
        RunShellCommand(m_tmux + "new-session -d -x " + std::to_string(columns) + " -y " + std::to_string(rows) +
                        " \"cd '" + folder + "' && " + command + "; echo [exit \\$?]; sleep 600\"");
        RunShellCommand(m_tmux + "set-option -g history-limit 5000");
        RunShellCommand(m_tmux + "pipe-pane -o \"cat >> '" + folder + "/raw.log'\"");
    }
    ~TmuxTerminal() { RunShellCommand(m_tmux + "kill-server 2>/dev/null"); }
    TmuxTerminal(const TmuxTerminal&) = delete;
    TmuxTerminal& operator=(const TmuxTerminal&) = delete;

    // Text as typed, key by key (no single quotes in it).
    void type(const std::string& text) { RunShellCommand(m_tmux + "send-keys -l -- '" + text + "'"); }
    // Keys by tmux's names: Left, Up, BSpace, Enter, C-a, C-c, C-d ...
    void press(const std::vector<std::string>& keys) {
        std::string names;
        for (const std::string& key : keys) names += " " + key;
        RunShellCommand(m_tmux + "send-keys --" + names);
    }
    // Everything the terminal shows and has scrolled away, as its lines are drawn.
    std::string screen() { return RunShellCommand(m_tmux + "capture-pane -p -J -S - -E -").out; }
    // Waits until the screen shows `text` `count` times (at most ten seconds); the screen at that moment.
    std::string waitFor(const std::string& text, int count = 1) {
        std::string shown;
        for (int tries = 0; tries < 200; ++tries) {
            shown = screen();
            int found = 0;
            for (size_t at = shown.find(text); at != std::string::npos; at = shown.find(text, at + 1)) ++found;
            if (found >= count) return shown;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return shown;
    }

    // Plays the steps in turn; the screen after the last.
    std::string play(const std::vector<KeyStep>& steps) {
        std::string shown;
        for (const KeyStep& step : steps) {
            if (!step.typed.empty()) type(step.typed);
            if (!step.keys.empty()) press(step.keys);
            if (!step.shows.empty()) shown = waitFor(step.shows, step.count);
        }
        return shown;
    }

private:
    std::string m_tmux;
};
