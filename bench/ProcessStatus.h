// The benchmarks' view of their own memory, from /proc/self/status.
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

// A field of /proc/self/status in KiB ("VmRSS", "VmHWM"), or -1.
inline long statusKiB(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    const std::string prefix = std::string(field) + ":";
    while (std::getline(status, line))
        if (line.starts_with(prefix)) return std::strtol(line.c_str() + prefix.size(), nullptr, 10);
    return -1;
}
