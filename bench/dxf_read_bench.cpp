// The DXF reader against libdxflib on one large file, in one run. Our reader builds the whole model
// (entities, xdata, extension dictionaries, xrecords) and then walks model space resolving every 1005
// link; libdxflib only parses and hands out entities and xdata. The file comes from
// bench/make_large_dxf.py; its path is $QX_BENCH_DXF, else large.dxf in the current folder.
//
// Time: BM_QxReadAndResolveLinks times our read and, in the same iteration, libdxflib's parse of the same
// file; `times_dxflib` is how many times faster ours is.
// Memory: every measurement runs in a fresh process (the program runs itself), which notes its resident
// size, reads, and reports how far above that its peak went (`peak_MiB`). Differences inside one
// long-lived process would hide what the allocator keeps from earlier runs.
#include "bench/ProcessStatus.h"
#include "drawing/model/AcDb.h"
#include "support/FileSystem.h"

#include <benchmark/benchmark.h>
#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string benchFile() {
    const char* path = std::getenv("QX_BENCH_DXF");
    return path ? path : "large.dxf";
}

bool fileMissing(benchmark::State& state) {
    if (std::ifstream(benchFile()).good()) return false;
    state.SkipWithError("no large DXF: run bench/make_large_dxf.py large.dxf, or set QX_BENCH_DXF");
    return true;
}

double fileMiB(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    return static_cast<double>(file.tellg()) / (1024.0 * 1024.0);
}

struct ChildMemory {
    double peakMiB = 0.0;      // highest resident size during the work, above the size before it
    double residentMiB = 0.0;  // resident size when the work ended, above the size before it
};

// The program runs itself with this first argument, a kind of work and a file, to measure in a fresh
// process: it prints its two figures and exits 0.
constexpr const char* kMeasureArgument = "--measure-in-this-process";

// Measures work of a kind ("qx", "dxflib") on a file in a fresh process; nullopt when that fails.
std::optional<ChildMemory> measureInChild(const std::string& kind, const std::string& file) {
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) return std::nullopt;
    const pid_t child = fork();
    if (child < 0) return std::nullopt;
    if (child == 0) {
        close(pipeEnds[0]);
        dup2(pipeEnds[1], STDOUT_FILENO);
        execl("/proc/self/exe", "dxf_read_bench", kMeasureArgument, kind.c_str(), file.c_str(), nullptr);
        _exit(127);
    }
    close(pipeEnds[1]);
    std::string output;
    char buffer[256];
    for (ssize_t got; (got = ::read(pipeEnds[0], buffer, sizeof(buffer))) > 0;) output.append(buffer, static_cast<size_t>(got));
    close(pipeEnds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    ChildMemory memory;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 ||
        std::sscanf(output.c_str(), "%lf %lf", &memory.peakMiB, &memory.residentMiB) != 2)
        return std::nullopt;
    return memory;
}

// Every 1005 item of every model-space entity, resolved to an object id.
size_t resolveLinks(AcDbDatabase& database) {
    size_t resolved = 0;
    AcDbObjectPointer<AcDbBlockTableRecord> model(database.modelSpaceId(), AcDb::kForRead);
    std::unique_ptr<AcDbBlockTableRecordIterator> it;
    model->newIterator(it);
    for (; !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity, AcDb::kForRead) != Acad::eOk) continue;
        for (const XDataApp& app : entity->xDataApps()) {
            for (const ResItem& item : app.items) {
                if (item.code() != 1005) continue;
                AcDbObjectId id;
                if (database.getAcDbObjectId(id, false, AcDbHandle(item.textView())) == Acad::eOk) ++resolved;
            }
        }
        entity->close();
    }
    return resolved;
}

// Reads the file into `database` and resolves its links; the number of links, or nullopt.
std::optional<size_t> qxRead(const std::string& file, AcDbDatabase& database) {
    if (database.readDwgFile(QxFs::FromNative(file)) != Acad::eOk) return std::nullopt;
    return resolveLinks(database);
}

class CountingAdapter : public DL_CreationAdapter {
public:
    void addMText(const DL_MTextData&) override { ++entities; }
    void addInsert(const DL_InsertData&) override { ++entities; }
    void addLine(const DL_LineData&) override { ++entities; }
    void addPolyline(const DL_PolylineData&) override { ++entities; }
    void addXDataString(int code, const std::string& value) override {
        if (code == 1005) ++links;
        benchmark::DoNotOptimize(value.data());
    }
    size_t entities = 0;
    size_t links = 0;
};

bool dxflibRead(const std::string& file) {
    CountingAdapter adapter;
    DL_Dxf dxf;
    const bool read = dxf.in(file, &adapter);
    benchmark::DoNotOptimize(adapter.links);
    return read;
}

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_QxReadAndResolveLinks(benchmark::State& state) {
    if (fileMissing(state)) return;
    const std::string file = benchFile();
    size_t links = 0;
    double ours = 0.0;
    double theirs = 0.0;
    for (auto _ : state) {
        bool ok = true;
        // Freeing the model is no part of reading it: the database outlives the timed part.
        auto database = std::make_unique<AcDbDatabase>(false, true);
        const double seconds = secondsOf([&] {
            const auto read = qxRead(file, *database);
            ok = read.has_value();
            links = read.value_or(0);
        });
        database.reset();
        if (!ok) {
            state.SkipWithError("the reader failed");
            return;
        }
        state.SetIterationTime(seconds);
        ours += seconds;
        theirs += secondsOf([&] { ok = dxflibRead(file); });
        if (!ok) {
            state.SkipWithError("libdxflib failed");
            return;
        }
    }
    state.counters["links"] = static_cast<double>(links);
    state.counters["file_MiB"] = fileMiB(file);
    state.counters["dxflib_ms"] = 1000.0 * theirs / static_cast<double>(state.iterations());
    state.counters["times_dxflib"] = theirs / ours;
}

void reportPeak(benchmark::State& state, const std::string& kind) {
    std::optional<ChildMemory> memory;
    for (auto _ : state) {
        memory = measureInChild(kind, benchFile());
        if (!memory) {
            state.SkipWithError("the measuring child failed");
            return;
        }
    }
    const double file = fileMiB(benchFile());
    state.counters["file_MiB"] = file;
    state.counters["peak_MiB"] = memory->peakMiB;
    state.counters["peak_per_file"] = memory->peakMiB / file;
}

void BM_QxReadPeakMemory(benchmark::State& state) {
    if (!fileMissing(state)) reportPeak(state, "qx");
}

void BM_DxfLibReadPeakMemory(benchmark::State& state) {
    if (!fileMissing(state)) reportPeak(state, "dxflib");
}

// A file of bare LINE records (a "0" line and a "LINE" line each): what one entity costs in the model.
void BM_QxBareLineBytes(benchmark::State& state) {
    const auto lines = static_cast<size_t>(state.range(0));
    const std::string path = "/tmp/qx_bare_lines_" + std::to_string(getpid()) + ".dxf";
    {
        std::ofstream out(path, std::ios::binary);
        out << "0\nSECTION\n2\nENTITIES\n";
        for (size_t i = 0; i < lines; ++i) out << "0\nLINE\n";
        out << "0\nENDSEC\n0\nEOF\n";
    }
    std::optional<ChildMemory> memory;
    for (auto _ : state) memory = measureInChild("qx", path);
    const double file = fileMiB(path);
    std::remove(path.c_str());
    if (!memory) {
        state.SkipWithError("the measuring child failed");
        return;
    }
    state.counters["file_MiB"] = file;
    state.counters["peak_bytes_per_line"] = memory->peakMiB * 1024.0 * 1024.0 / static_cast<double>(lines);
    state.counters["model_bytes_per_line"] = memory->residentMiB * 1024.0 * 1024.0 / static_cast<double>(lines);
}

// The child's side of measureInChild: reads the file, keeps what was read, and prints its figures.
int measureInThisProcess(const std::string& kind, const std::string& file) {
    const long before = statusKiB("VmRSS");
    AcDbDatabase database(false, true);
    bool read = false;
    if (kind == "qx") read = qxRead(file, database).has_value();
    if (kind == "dxflib") read = dxflibRead(file);
    if (!read || before < 0) return 1;
    std::printf("%f %f\n", static_cast<double>(statusKiB("VmHWM") - before) / 1024.0,
                static_cast<double>(statusKiB("VmRSS") - before) / 1024.0);
    std::fflush(stdout);
    // The process ends here: freeing the model would only cost time.
    _exit(0);
}

} // namespace

BENCHMARK(BM_QxReadAndResolveLinks)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);
BENCHMARK(BM_QxReadPeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_DxfLibReadPeakMemory)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_QxBareLineBytes)->Unit(benchmark::kMillisecond)->Iterations(1)->Arg(1000000);

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == kMeasureArgument) return measureInThisProcess(argv[2], argv[3]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
