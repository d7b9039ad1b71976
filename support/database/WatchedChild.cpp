// Running work in a watched child process.
#include "support/database/WatchedChild.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// How often the parent looks at the child when it has nothing to read.
constexpr int kWatchMilliseconds = 10;

// The child's resident size from /proc/PID/statm (its second field, in pages); 0 once it has ended.
size_t residentBytes(pid_t pid) {
    std::ifstream statm("/proc/" + std::to_string(pid) + "/statm");
    size_t total = 0;
    size_t resident = 0;
    if (!(statm >> total >> resident)) return 0;
    return resident * static_cast<size_t>(::sysconf(_SC_PAGESIZE));
}

void waitFor(pid_t pid, int& status) {
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
}

ChildOutcome killed(pid_t pid, ChildOutcome why) {
    ::kill(pid, SIGKILL);
    int status = 0;
    waitFor(pid, status);
    return why;
}

// Reads what is there; false at the end of the answer (or a read error, which ends it as well).
bool readAvailable(int fd, std::string& output) {
    char buffer[65536];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n > 0) {
            output.append(buffer, static_cast<size_t>(n));
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        return n < 0 && errno == EAGAIN;
    }
}

} // namespace

ChildResult RunWatchedChild(const std::function<bool(int answerFd)>& work, const ChildLimits& limits) {
    ChildResult result;
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return result;
    const auto start = std::chrono::steady_clock::now();
    const pid_t pid = ::fork();
    if (pid < 0) {
        ::close(fds[0]);
        ::close(fds[1]);
        return result;
    }
    if (pid == 0) {
        ::close(fds[0]);
        ::_exit(work(fds[1]) ? 0 : 1);
    }
    ::close(fds[1]);
    ::fcntl(fds[0], F_SETFL, ::fcntl(fds[0], F_GETFL) | O_NONBLOCK);

    bool answerEnded = false;
    for (;;) {
        pollfd readable{fds[0], POLLIN, 0};
        if (!answerEnded && ::poll(&readable, 1, kWatchMilliseconds) > 0) answerEnded = !readAvailable(fds[0], result.output);
        if (answerEnded) {
            int status = 0;
            const pid_t waited = ::waitpid(pid, &status, WNOHANG);
            // Where the host reaps children itself the status is lost; the answer must then speak for itself.
            if (waited == pid || (waited < 0 && errno == ECHILD)) {
                const bool success = waited != pid || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
                result.outcome = success ? ChildOutcome::Finished : ChildOutcome::Failed;
                break;
            }
            if (waited == 0) ::poll(nullptr, 0, kWatchMilliseconds);
        }
        if (std::chrono::steady_clock::now() - start > limits.maxWallTime) {
            result.outcome = killed(pid, ChildOutcome::TimeLimit);
            break;
        }
        if (residentBytes(pid) > limits.maxResidentBytes) {
            result.outcome = killed(pid, ChildOutcome::MemoryLimit);
            break;
        }
    }
    ::close(fds[0]);
    if (result.outcome != ChildOutcome::Finished) result.output.clear();
    return result;
}
