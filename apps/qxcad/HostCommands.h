// The host's own commands: HELP, and the application's project manager XMMANAGE.
#pragma once

#include "support/CString.h"


void RegisterHostCommands();
// Prints the current project's tree (the host's XMMANAGE command).
void ShowProjectManager();
