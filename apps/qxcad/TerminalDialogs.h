// qxcad's dialog service: dialogs on the terminal, answered by lines of standard input.
#pragma once

// Installs the service for the life of the process.
void InstallTerminalDialogs();
