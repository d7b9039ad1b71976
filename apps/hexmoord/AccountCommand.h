// `hexmoord account add|disable|password|list --db ...`: an administrator keeps the team's accounts.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

// Adds the `account` command to the program; the returned function runs it (its exit status) when the
// command line chose it.
std::function<int()> AddAccountCommand(CLI::App& app);
