// The waits of a repository client against a site that a test or a fuzzing harness runs on loopback: short,
// so that a failure costs little time.
#pragma once

#include "repository/FtpTimings.h"

inline FtpTimings LoopbackFtpTimings(int connectMs, int stallMs, int connectAttempts, int pauseMs, int lockWaits) {
    FtpTimings timings;
    timings.connectTimeoutMs = connectMs;
    timings.stallTimeoutMs = stallMs;
    timings.connectAttempts = connectAttempts;
    timings.connectPauseMs = pauseMs;
    timings.lockPauseMs = pauseMs;
    timings.lockWaits = lockWaits;
    timings.treeFilePauseMs = 0;
    return timings;
}
