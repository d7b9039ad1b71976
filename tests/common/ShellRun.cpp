#include "common/ShellRun.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

ShellRun RunShellCommand(const std::string& command) {
    ShellRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer;
    size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.out.append(buffer.data(), n);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}
