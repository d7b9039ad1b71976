// qxcad run through the shell on an install folder below `dir`, with `input` on standard input; standard
// error is kept apart in err.txt of `dir`.
#pragma once

#include "common/ShellRun.h"
#include "common/TempFolder.h"

#include <gtest/gtest.h>
#include <string>

inline ShellRun RunQxcad(const TempFolder& dir, const std::string& args, const std::string& input = "") {
    return RunShellCommand("printf '" + input + "' | " + QX_BINARY_DIR + "/bin/qxcad --install-dir '" + dir.native() +
                           "/corvane' " + args + " 2>'" + dir.native() + "/err.txt'");
}
