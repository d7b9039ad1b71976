// The DXF reader against libdxflib on one large file: our reader builds the whole model (entities, xdata,
// extension dictionaries, xrecords) and then walks model space resolving every 1005 link; libdxflib only
// parses and hands out entities and xdata. The file comes from bench/make_large_dxf.py; its path is
// $QX_BENCH_DXF, else large.dxf in the current folder.
#include "drawing/model/AcDb.h"
#include "support/FileSystem.h"

#include <benchmark/benchmark.h>
#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
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

double residentMiB() {
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

double fileMiB() {
    std::ifstream file(benchFile(), std::ios::binary | std::ios::ate);
    return static_cast<double>(file.tellg()) / (1024.0 * 1024.0);
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
                if (database.getAcDbObjectId(id, false, AcDbHandle(item.asText().view())) == Acad::eOk) ++resolved;
            }
        }
        entity->close();
    }
    return resolved;
}

void BM_QxReadAndResolveLinks(benchmark::State& state) {
    if (fileMissing(state)) return;
    const CString path = QxFs::FromNative(benchFile());
    size_t links = 0;
    double growth = 0.0;
    for (auto _ : state) {
        const double before = residentMiB();
        auto database = std::make_unique<AcDbDatabase>(false, true);
        if (database->readDwgFile(path) != Acad::eOk) {
            state.SkipWithError("the reader failed");
            return;
        }
        links = resolveLinks(*database);
        benchmark::DoNotOptimize(links);
        // Freeing the model is no part of reading it.
        state.PauseTiming();
        growth = std::max(growth, residentMiB() - before);
        database.reset();
        state.ResumeTiming();
    }
    state.counters["links"] = static_cast<double>(links);
    state.counters["file_MiB"] = fileMiB();
    state.counters["model_MiB"] = growth;
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

void BM_DxfLibRead(benchmark::State& state) {
    if (fileMissing(state)) return;
    size_t links = 0;
    for (auto _ : state) {
        CountingAdapter adapter;
        DL_Dxf dxf;
        if (!dxf.in(benchFile(), &adapter)) {
            state.SkipWithError("libdxflib failed");
            return;
        }
        links = adapter.links;
    }
    state.counters["links"] = static_cast<double>(links);
}

} // namespace

BENCHMARK(BM_QxReadAndResolveLinks)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_DxfLibRead)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
