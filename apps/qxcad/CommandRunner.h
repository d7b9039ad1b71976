// Runs what the person types: commands of the loaded modules and the host's own, then the command strings
// that a command queued for after itself.
#pragma once

#include "support/CString.h"

class CommandRunner {
public:
    CommandRunner();

    // Runs one command by name; false (after a message) when no such command exists.
    bool run(const CString& name);
    // Runs every command of a line; blanks separate commands, as in the CAD host. False if any was unknown.
    bool runLine(const CString& line);
    // Reads commands at a prompt until the input ends or the person types QUIT.
    bool runPrompt();
};
