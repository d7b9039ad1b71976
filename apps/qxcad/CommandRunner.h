// Runs what the person types, through the host's command line, and names the commands that do not exist.
#pragma once

#include "support/CString.h"

class CommandRunner {
public:
    CommandRunner();

    // Runs every command of a line. False if any was unknown.
    bool runLine(const CString& line);
    // Reads commands at a prompt until the input ends or the person types QUIT.
    bool runPrompt();
};
