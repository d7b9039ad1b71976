// An Access word file read through the reading process: its tables, their fields, counts and columns.
// The reading process is a child, so libmdb's own faults end there; what this harness watches is the
// parent: that it survives any answer, and that a child never takes the machine's memory (a watchdog
// kills a child above kChildLimitMb and reports the input as a finding).
#include "FuzzSupport.h"

#include "support/database/OperateMdb.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <pthread.h>
#include <fstream>
#include <thread>
#include <unistd.h>

namespace {

constexpr long kChildLimitMb = 1536;

long residentMb(const std::string& pid) {
    std::ifstream statm("/proc/" + pid + "/statm");
    long pages = 0, resident = 0;
    if (!(statm >> pages >> resident)) return 0;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024) / 1024;
}

// Children of every thread of this process, by /proc/self/task/*/children.
void killGreedyChildren() {
    std::error_code ec;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task", ec)) {
        std::ifstream children(task.path() / "children");
        std::string pid;
        while (children >> pid) {
            const long mb = residentMb(pid);
            if (mb <= kChildLimitMb) continue;
            ::kill(static_cast<pid_t>(std::stol(pid)), SIGKILL);
            std::fprintf(stderr, "the Access reading process grew to %ld MB\n", mb);
            std::abort();
        }
    }
}

void watchChildren() {
    for (;;) {
        killGreedyChildren();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

void readTable(COperateMdb& database, const CString& table) {
    database.GetRecordCount(table);
    CStringArray fields;
    database.GetFieldNames(table, fields);
    for (int i = 0; i < fields.GetSize(); ++i) {
        int kind = 0;
        database.GetFieldKind(table, fields[i], kind);
        CStringArray values;
        database.GetFieldValues(table, fields[i], values, kind, true);
    }
}

// The watchdog must not take the fuzzer's alarm: libFuzzer ignores SIGALRM outside its own thread, and a
// hang would then go unseen.
void startWatchdog() {
    sigset_t alarm, previous;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    pthread_sigmask(SIG_BLOCK, &alarm, &previous);
    std::thread(watchChildren).detach();
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startWatchdog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    COperateMdb database(fuzz::WriteScratchFile("word.mdb", data, size));
    CStringArray tables;
    database.GetTableNames(tables);
    for (int i = 0; i < tables.GetSize(); ++i) readTable(database, tables[i]);
    return 0;
}
