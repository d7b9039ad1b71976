// The waits and bounds of the repository client. The product keeps the values below; tests shorten them so that a
// server that is down or a lock that is held costs them little time.
#pragma once

#include "support/Export.h"

struct QX_API FtpTimings {
    int connectTimeoutMs = 6000;
    // A transfer or a reply that moves no byte for this long is given up (the send and receive time-outs).
    int stallTimeoutMs = 6000;
    // Attempts to reach the site at each connect, and the pause between two of them.
    int connectAttempts = 5;
    int connectPauseMs = 500;
    // The journal lock: the pause between two looks at a lock held by another host, and how many looks
    // before the lock counts as abandoned and is broken.
    int lockPauseMs = 400;
    int lockWaits = 6;
    // The pause before each file of a folder tree is submitted.
    int treeFilePauseMs = 1000;
    // The most a download may bring when the site announces no size (1 GiB); with a size, the size plus 1 MiB.
    long long unannouncedDownloadLimit = 1LL << 30;
};
