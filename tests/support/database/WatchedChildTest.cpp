#include "support/database/WatchedChild.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <unistd.h>

namespace {

// A forked child holds the pages of its parent, so memory limits are set above what this process holds.
size_t ownResidentBytes() {
    std::ifstream statm("/proc/self/statm");
    size_t total = 0;
    size_t resident = 0;
    statm >> total >> resident;
    return resident * static_cast<size_t>(::sysconf(_SC_PAGESIZE));
}

bool writeText(int fd, const std::string& text) {
    return ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

} // namespace

TEST(WatchedChild, AnAnswerIsTakenOnlyFromAChildThatSucceeds) {
    const std::string big(5 << 20, 'x');  // more than a pipe holds: read while the child writes
    ChildResult result = RunWatchedChild([&](int fd) { return writeText(fd, "head") && writeText(fd, big); });
    EXPECT_EQ(result.outcome, ChildOutcome::Finished);
    EXPECT_EQ(result.output, "head" + big);

    result = RunWatchedChild([](int fd) { return writeText(fd, "half an answer") && false; });
    EXPECT_EQ(result.outcome, ChildOutcome::Failed);
    EXPECT_TRUE(result.output.empty());

    result = RunWatchedChild([](int fd) {
        writeText(fd, "then a crash");
        std::signal(SIGABRT, SIG_DFL);
        std::abort();
        return true;
    });
    EXPECT_EQ(result.outcome, ChildOutcome::Failed);
    EXPECT_TRUE(result.output.empty());
}

TEST(WatchedChild, AChildIsKilledAtTheMemoryLimitOrAtTheTimeLimit) {
    ChildLimits limits;
    limits.maxResidentBytes = ownResidentBytes() + (size_t{64} << 20);
    limits.maxWallTime = std::chrono::minutes(1);
    ChildResult result = RunWatchedChild(
        [](int) {
            // Should the watch fail, the child stops at 1 GB and waits for the time limit instead.
            for (int megabytes = 0; megabytes < 1024; ++megabytes) {
                char* block = static_cast<char*>(std::malloc(1 << 20));
                if (!block) break;
                std::memset(block, 1, 1 << 20);
            }
            ::pause();
            return true;
        },
        limits);
    EXPECT_EQ(result.outcome, ChildOutcome::MemoryLimit);

    limits.maxWallTime = std::chrono::milliseconds(200);
    result = RunWatchedChild(
        [](int fd) {
            writeText(fd, "a start");
            for (;;) ::pause();
            return true;
        },
        limits);
    EXPECT_EQ(result.outcome, ChildOutcome::TimeLimit);
    EXPECT_TRUE(result.output.empty());
}
