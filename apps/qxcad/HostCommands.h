// The host's own commands (HELP, and the application's project manager XMMANAGE) and the queue of command
// strings that modules send to run after the current command.
#pragma once

#include "support/CString.h"

#include <vector>

void RegisterHostCommands();
// Prints the current project's tree (the host's XMMANAGE command).
void ShowProjectManager();
std::vector<CString> TakeQueuedCommandStrings();
