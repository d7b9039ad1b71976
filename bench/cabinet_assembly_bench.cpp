// The cabinet assembly of a whole project: the scan of its primary diagram (circuits, counted parts,
// secondary drawings, titles, markers) and, for every device, its own drawings' part rows and the merge of
// its groups. Projects come from bench/make_assembly_project.py; $QX_BENCH_PROJECTS lists their "Project"
// folders separated by ":", one benchmark each, so that runs of several scales show how the cost grows.
#include "drawing/DrawingReads.h"
#include "drawing/ExtractionState.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/DeviceBomMerge.h"
#include "platform/host/Documents.h"
#include "project/ProjectFiles.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> benchProjects() {
    std::vector<std::string> projects;
    const char* list = std::getenv("QX_BENCH_PROJECTS");
    std::stringstream in(list ? list : "Project");
    for (std::string folder; std::getline(in, folder, ':');)
        if (!folder.empty()) projects.push_back(folder);
    return projects;
}

void scanAndMerge(benchmark::State& state, const std::string& nativeFolder) {
    CString folder = QxFs::FromNative(nativeFolder);
    folder.TrimRight(u'\\');
    const CString itm = folder + u"\\" + GetFileNameOfPath(folder) + u".itm";
    CStringArray devices;
    if (!ListDevices(itm, devices)) {
        state.SkipWithError("no project: run bench/make_assembly_project.py OUT, set QX_BENCH_PROJECTS=OUT/Project");
        return;
    }
    size_t rows = 0;
    for (auto _ : state) {
        // A fresh host each time, so that every scan opens the drawing and adds its markers anew.
        acDocManagerPtr()->reset();
        // As in a command: each drawing is read once.
        const CDrawingReadScope reads;
        QxScanPrimaryDiagram(folder + u"\\");
        rows = 0;
        for (const CString& prj : devices) {
            HMProjectTree_INFO node;
            node.m_strCirNo = RemoveFileExtension(GetFileNameOfPath(prj));
            QxGetDeviceSecondaryRows(prj, node.m_arrSecondaryBom);
            QxMergeDeviceBom(&node);
            rows += node.m_arrPrimaryBom.GetSize() + node.m_arrSecondaryBom.GetSize();
        }
    }
    state.counters["circuits"] = static_cast<double>(g_arrCircuits.GetSize());
    state.counters["groups"] = static_cast<double>(g_arrReferGroups.GetSize());
    state.counters["devices"] = static_cast<double>(devices.GetSize());
    state.counters["rows"] = static_cast<double>(rows);
    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);
    acDocManagerPtr()->reset();
}

const bool registered = [] {
    for (const std::string& project : benchProjects())
        benchmark::RegisterBenchmark(("ScanAndMerge/" + project).c_str(), scanAndMerge, project)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(3);
    return true;
}();

} // namespace

BENCHMARK_MAIN();
