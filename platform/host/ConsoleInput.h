// The host's one reader of standard input. Typed commands and answers to questions come through the same
// buffered reader, so that a script can pipe both in one stream. At a terminal the person edits each line
// (libedit: arrows, Ctrl-A/E, history); Ctrl-C gives up the line, Ctrl-D on an empty line ends the input.
#pragma once

#include "support/CString.h"

#include <optional>

// Which history the Up and Down keys walk: each kind of prompt keeps its own.
enum class ConsoleHistory { Commands, Dialog, Answers };

struct ConsoleRead {
    enum class End { Line, Interrupted, EndOfInput };
    End end = End::EndOfInput;
    CString text;  // the line without its line end (UTF-8 on the terminal)
};

// One line after `prompt`, which goes to standard error. A piped line keeps its first MiB.
QX_API ConsoleRead ReadConsoleInput(const CString& prompt, ConsoleHistory history);
// One line that a terminal does not echo and no history keeps.
QX_API ConsoleRead ReadConsoleSecret(const CString& prompt);
// The line, or nullopt when the person gave it up or the input ended.
QX_API std::optional<CString> ReadConsoleLine(const CString& prompt, ConsoleHistory history);
QX_API bool ConsoleIsInteractive();
