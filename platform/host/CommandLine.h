// How the host runs a command line: blanks separate commands, as at the CAD host's prompt, and the command
// strings a command queued (sendStringToExecute) run after it, before the next command of the line.
#pragma once

#include "support/CString.h"

#include <functional>
#include <vector>

QX_API std::vector<CString> SplitCommandWords(const CString& line);

// Runs one command by name, then what it queued. False when no command has that name; `unknown` is told
// the name (queued strings that name no command are told too, but do not make the result false).
QX_API bool RunHostCommand(const CString& name, const std::function<void(const CString&)>& unknown);
QX_API bool RunHostCommandLine(const CString& line, const std::function<void(const CString&)>& unknown);
