// The host's one reader of standard input. Typed commands and answers to questions come through the same
// buffered reader, so that a script can pipe both in one stream.
#pragma once

#include "support/CString.h"

#include <optional>

// One line of standard input without its line end (UTF-8 on the terminal); nullopt at the end of input.
// With `secret`, a terminal does not echo what is typed.
QX_API std::optional<CString> ReadConsoleLine(bool secret = false);
QX_API bool ConsoleIsInteractive();
