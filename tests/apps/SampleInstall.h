// qxcad on an install folder below a test's own folder, and the demo's sample project laid out in it.
#pragma once

#include "common/ShellRun.h"
#include "common/TempFolder.h"

#include <cstdlib>
#include <string>

// qxcad run through the shell on the install folder below `dir`, with `input` on standard input (printf's
// escapes); standard error is kept apart in err.txt of `dir`.
inline ShellRun RunQxcad(const TempFolder& dir, const std::string& args, const std::string& input = "") {
    return RunShellCommand("printf '" + input + "' | " + QX_BINARY_DIR + "/bin/qxcad --install-dir '" + dir.native() +
                           "/corvane' " + args + " 2>'" + dir.native() + "/err.txt'");
}

// The sample project 华东变电站 in the install's My Projects, and a stored login of ann: true when both worked.
inline bool LayOutSampleProjectAndLogIn(const TempFolder& dir) {
    const std::string command = "/usr/bin/python3 '" + std::string(QX_SOURCE_DIR) + "/samples/make_sample_project.py' '" +
                                dir.native() + "/corvane/My Projects' '" + dir.native() + "/corvane' >/dev/null";
    return std::system(command.c_str()) == 0 && RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n").status == 0;
}
