// The drawing readers on large drawings made by bench/make_reader_drawings.py: the BOM table of a
// secondary drawing of 20,000 rows, and the head, title, circuits and circuit BOMs of a primary diagram of
// 5,000 circuit blocks. Each reader is timed on a drawing already read; the whole read from the file is
// timed too. The folder is $QX_BENCH_READERS, else reader_drawings in the current folder.
#include "drawing/access/QxDwgObjects.h"
#include "drawing/bom/DwgBomRows.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "drawing/primary/SysHead.h"
#include "drawing/title/TitleBlock.h"
#include "platform/host/Documents.h"
#include "support/FileSystem.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

namespace {

std::string benchFile(const char* name) {
    const char* folder = std::getenv("QX_BENCH_READERS");
    return std::string(folder ? folder : "reader_drawings") + "/" + name;
}

CString logicPath(const char* name) {
    return QxFs::FromNative(benchFile(name));
}

// The drawing read once for every benchmark of a reader; null, with the benchmark skipped, when missing.
AcDbDatabase* loaded(const char* name, benchmark::State& state) {
    static std::unique_ptr<AcDbDatabase> primary;
    static std::unique_ptr<AcDbDatabase> secondary;
    std::unique_ptr<AcDbDatabase>& slot = std::string(name) == "primary.dwg" ? primary : secondary;
    if (!slot) {
        auto database = std::make_unique<AcDbDatabase>(false, true);
        if (!std::ifstream(benchFile(name)).good() || database->readDwgFile(logicPath(name)) != Acad::eOk) {
            state.SkipWithError("no drawings: run bench/make_reader_drawings.py reader_drawings, or set QX_BENCH_READERS");
            return nullptr;
        }
        slot = std::move(database);
    }
    return slot.get();
}

struct BomColumns {
    CStringArray names, types, counts, codes, prices, kinds, labels, notes, extras;
};

void BM_SecondaryBomRows(benchmark::State& state) {
    AcDbDatabase* database = loaded("secondary.dwg", state);
    if (database == nullptr) return;
    int rows = 0;
    for (auto _ : state) {
        BomColumns c;
        QxGetDatabaseBomRows(database, c.names, c.types, c.counts, c.codes, c.prices, c.kinds, c.labels, c.notes,
                             c.extras);
        rows = c.names.GetSize();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = rows;
}

void BM_SecondaryBomRowsFromFile(benchmark::State& state) {
    if (loaded("secondary.dwg", state) == nullptr) return;
    int rows = 0;
    for (auto _ : state) {
        BomColumns c;
        QxGetDwgBomRows(logicPath("secondary.dwg"), c.names, c.types, c.counts, c.codes, c.prices, c.kinds, c.labels,
                        c.notes, c.extras);
        rows = c.names.GetSize();
    }
    state.counters["rows"] = rows;
}

void BM_SecondaryTitle(benchmark::State& state) {
    AcDbDatabase* database = loaded("secondary.dwg", state);
    if (database == nullptr) return;
    for (auto _ : state) {
        CString number, name;
        benchmark::DoNotOptimize(QxGetDwgTitle(database, number, name));
    }
}

void BM_PrimaryHeadAndTitle(benchmark::State& state) {
    AcDbDatabase* database = loaded("primary.dwg", state);
    if (database == nullptr) return;
    for (auto _ : state) {
        bool found1, foundBus, found2;
        CString text1, textBus, text2, number, name;
        AcDbObjectId id1, id2, idBus;
        QxReadSysHead(database, found1, foundBus, found2, text1, textBus, text2, id1, id2, idBus);
        benchmark::DoNotOptimize(QxGetDwgTitle(database, number, name));
    }
}

void BM_PrimaryCircuits(benchmark::State& state) {
    AcDbDatabase* database = loaded("primary.dwg", state);
    if (database == nullptr) return;
    acdbHostApplicationServices()->setWorkingDatabase(database);
    int records = 0;
    for (auto _ : state) {
        CCir1AttrubuteArray circuits;
        QxGetPrimaryCircuits(logicPath("primary.dwg"), 1, circuits);
        records = circuits.GetSize();
        QxFreeCircuits(circuits);
    }
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    state.counters["circuits"] = records;
}

void BM_PrimaryCircuitBoms(benchmark::State& state) {
    AcDbDatabase* database = loaded("primary.dwg", state);
    if (database == nullptr) return;
    acdbHostApplicationServices()->setWorkingDatabase(database);
    CCir1AttrubuteArray circuits;
    QxGetPrimaryCircuits(logicPath("primary.dwg"), 1, circuits);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    int parts = 0;
    for (auto _ : state) {
        parts = 0;
        for (const CCir1Attrubute* circuit : circuits) {
            for (const CString& handle : circuit->Handles) {
                AcDbObjectId id;
                if (!QxHandleToId(database, handle, id)) continue;
                AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
                CStringArray types, codes, names, counts, prices, info;
                QxGetCircuitBom(reference.get(), types, codes, names, counts, prices, info);
                parts += types.GetSize();
            }
        }
        benchmark::DoNotOptimize(parts);
    }
    QxFreeCircuits(circuits);
    state.counters["parts"] = parts;
}

} // namespace

BENCHMARK(BM_SecondaryBomRows)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SecondaryBomRowsFromFile)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SecondaryTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrimaryHeadAndTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrimaryCircuits)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrimaryCircuitBoms)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
