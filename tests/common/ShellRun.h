// Runs a command line through the shell, as a person would type it, and keeps what it printed on standard
// output: the tests of the programs judge them from outside.
#pragma once

#include <string>

struct ShellRun {
    int status = -1;  // the exit status; -1 when the command did not end normally
    std::string out;
};

ShellRun RunShellCommand(const std::string& command);
