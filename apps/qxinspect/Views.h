// The views of qxinspect. Each view lives in a file of its own and registers itself, so that views can
// be added without touching the program's main.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

// Exit statuses shared by every view.
enum InspectStatus : int { kViewRan = 0, kInputUnreadable = 1, kBadCommandLine = 2 };

struct InspectView {
    std::string name;
    std::string description;
    // Adds the view's arguments to its sub-command; the returned function runs the view.
    std::function<std::function<int()>(CLI::App& command)> setup;
};

bool RegisterInspectView(InspectView view);
