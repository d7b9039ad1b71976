// The project commands on whole projects against the embedded BOM centre, each as the host runs it (behind
// the command guard, which holds the command's drawing reads): HMBomSubmit (root, scan of the primary
// diagram, the walk that extracts every device's rows, the submit of a new revision of every device, the
// write-back of the changed documents), HMBomCmp (the same extraction, then the comparison), and the dry run
// of `qxinspect project` (the same extraction, nothing sent). Beside the time each prints "reads", the
// drawing files read per command, and "drawings", the drawing files of the project.
//
// Projects come from bench/make_submit_project.py (bench/run_project_benchmarks.py makes four sizes and runs
// this); $QX_BENCH_SUBMIT_PROJECTS lists their "Project" folders separated by ":". The project's Hexmoor.xml
// files are rewritten: the project is first sent as a new project to a centre in a temporary install folder.
#include "../apps/qxinspect/ProjectDryRun.h"
#include "drawing/DrawingReads.h"
#include "drawing/dxf/DxfReader.h"
#include "module/CommandTable.h"
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "module/exports/Exports.h"
#include "platform/InstallPath.h"
#include "platform/host/Documents.h"
#include "platform/host/HostOutput.h"
#include "platform/params/ParameterLibrary.h"
#include "project/ProjectFiles.h"
#include "project/folders/TreeToFolders.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"
#include "support/Locations.h"
#include "support/PathText.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace {

class QuietOutput final : public IHostOutput {
public:
    void Print(const CString& text) override { printed += text.GetLength(); }
    void MessageBox(const CString& text, const CString&, unsigned) override { boxes.push_back(text); }
    long long printed = 0;
    std::vector<CString> boxes;
};

std::vector<std::string> benchProjects() {
    std::vector<std::string> projects;
    const char* list = std::getenv("QX_BENCH_SUBMIT_PROJECTS");
    std::stringstream in(list ? list : "Project");
    for (std::string folder; std::getline(in, folder, ':');)
        if (!folder.empty()) projects.push_back(folder);
    return projects;
}

int drawingFiles(const std::string& nativeFolder) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(nativeFolder))
        if (entry.is_regular_file() && entry.path().extension() == ".dwg") ++count;
    return count;
}

// A temporary install folder whose embedded centre knows the project, made current, with a session.
class SubmitSetting {
public:
    explicit SubmitSetting(const CString& itm) {
        char pattern[] = "/tmp/qx-submit-bench-XXXXXX";
        if (!::mkdtemp(pattern)) return;
        m_install = pattern;
        std::filesystem::create_directories(m_install + "/Data");
        ::unsetenv("HEXMOOR_STORE");
        SetCorvaneInstallDirOverride(QxFs::FromNative(m_install) + u"\\");
        QxLSetLoginInfo_Varnholt_CV201301(u"bench", u"bench", u"bench", u"localhost:8585");
        HMStartSession();

        HMProjectTree_INFO tree;
        tree.m_strName = RemoveFileExtension(GetFileNameOfPath(itm));
        tree.m_strPath = GetParentPath(itm) + u"\\";
        BuildTreeFromFolders(itm, &tree);
        if (!QxSys1Refer(&tree)) return;
        WriteBackChangedNodes(*g_pHexmoorClient, tree.m_strPath, &tree);
        SetRecentProject(itm);
        m_devices = tree.m_arrCabinets.GetSize();
    }
    ~SubmitSetting() {
        HMEndSession();
        SetCorvaneInstallDirOverride(CString());
        if (!m_install.empty()) std::filesystem::remove_all(m_install);
    }
    SubmitSetting(const SubmitSetting&) = delete;
    SubmitSetting& operator=(const SubmitSetting&) = delete;

    int devices() const { return m_devices; }

private:
    std::string m_install;
    int m_devices = 0;
};

using Command = std::function<void(const CString& itm)>;

void runCommand(benchmark::State& state, const std::string& nativeFolder, const Command& command) {
    CString folder = QxFs::FromNative(nativeFolder);
    folder.TrimRight(u'\\');
    const CString itm = folder + u"\\" + GetFileNameOfPath(folder) + u".itm";
    if (!QxFs::Exists(itm)) {
        state.SkipWithError("no project: run bench/make_submit_project.py OUT, set QX_BENCH_SUBMIT_PROJECTS=OUT/Project");
        return;
    }
    QuietOutput output;
    SetHostOutput(&output);
    {
        const SubmitSetting setting(itm);
        if (setting.devices() == 0) {
            state.SkipWithError("the project could not be sent to the centre");
        } else {
            const std::uint64_t readsBefore = QxDrawingFilesRead();
            for (auto _ : state) {
                // A fresh host each time, so that every scan opens the drawing anew.
                acDocManagerPtr()->reset();
                command(itm);
            }
            const double reads = static_cast<double>(QxDrawingFilesRead() - readsBefore);
            state.counters["reads"] = reads / static_cast<double>(state.iterations());
            state.counters["drawings"] = drawingFiles(nativeFolder);
            state.counters["devices"] = setting.devices();
            state.counters["boxes"] = static_cast<double>(output.boxes.size());
        }
    }
    SetHostOutput(nullptr);
    acDocManagerPtr()->reset();
}

const bool registered = [] {
    const std::vector<std::pair<std::string, Command>> commands = {
        {"HMBomSubmit", [](const CString&) { RunModuleCommand(u"HMBomSubmit", HMBomSubmit); }},
        {"HMBomCmp", [](const CString&) { RunModuleCommand(u"HMBomCmp", HMBomCmp); }},
        // What `qxinspect project` runs under its own read scope, without printing the JSON.
        {"qxinspect_project", [](const CString& itm) {
             const CDrawingReadScope reads;
             benchmark::DoNotOptimize(RunProjectDryRun(itm).m_bWouldSend);
         }},
    };
    for (const std::string& project : benchProjects())
        for (const auto& [name, command] : commands)
            benchmark::RegisterBenchmark((name + "/" + project).c_str(), runCommand, project, command)
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime()
                ->Iterations(3);
    return true;
}();

} // namespace

BENCHMARK_MAIN();
