// A piece of work run in a child process that the parent watches: a library that may crash, loop or
// allocate without end on damaged input cannot take the caller, or the machine, with it.
#pragma once

#include "support/Export.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

struct ChildLimits {
    // Resident memory the child may hold. An address-space limit would do the same more cheaply, but the
    // sanitizer builds reserve terabytes of address space at start.
    size_t maxResidentBytes = size_t{512} << 20;
    std::chrono::milliseconds maxWallTime{10000};
};

enum class ChildOutcome {
    Finished,     // the child ended with status 0 (or the host reaped it first): `output` is what it wrote
    Failed,       // it ended otherwise: a failure of its own, a crash, its processor limit
    MemoryLimit,  // killed for holding more memory than allowed
    TimeLimit,    // killed for running longer than allowed
    NotStarted,   // no pipe or no process could be made
};

struct ChildResult {
    ChildOutcome outcome = ChildOutcome::NotStarted;
    std::string output;
};

// Runs `work` in a forked child, handing it the descriptor its answer goes to; the child ends with status
// 0 when `work` gives true. The parent reads the answer while it watches the child's resident size and
// the time since the start, and kills the child at once when either passes its limit.
QX_API ChildResult RunWatchedChild(const std::function<bool(int answerFd)>& work, const ChildLimits& limits = {});
