// A silent login of the embedded BOM centre, by the stored login's token and by the credential alone (a
// stored login of another server, so that no token is found: the slow credential check, and a new token
// kept in the store). The install is a fresh temporary folder with its own store.
//
// Time: process CPU time per login (the credential check is CPU-bound). Memory: `peak_MiB` is how far
// the resident size rises during one more login, after the peak was reset (/proc/self/clear_refs).
#include "bench/ProcessStatus.h"
#include "platform/InstallPath.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/embedded/BomCentre.h"
#include "platform/params/ParameterLibrary.h"
#include "support/FileSystem.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

// How far the resident size rose above its level before the work, in MiB.
double peakRiseMiB(const std::function<void()>& work) {
    std::ofstream("/proc/self/clear_refs") << "5";
    const long before = statusKiB("VmRSS");
    work();
    return static_cast<double>(statusKiB("VmHWM") - before) / 1024.0;
}

class TemporaryInstall {
public:
    TemporaryInstall() {
        char pattern[] = "/tmp/qx-login-bench-XXXXXX";
        m_folder = ::mkdtemp(pattern);
        std::filesystem::create_directories(m_folder + "/LocalData");
        SetCorvaneInstallDirOverride(QxFs::FromNative(m_folder) + u"\\");
        QxLSetLoginInfo_Varnholt_CV201301(u"ent", u"ann", u"pw", u"stored:8585");
    }
    ~TemporaryInstall() {
        SetCorvaneInstallDirOverride(CString());
        std::filesystem::remove_all(m_folder);
    }
    TemporaryInstall(const TemporaryInstall&) = delete;
    TemporaryInstall& operator=(const TemporaryInstall&) = delete;

private:
    std::string m_folder;
};

void silentLogins(benchmark::State& state, const char16_t* server) {
    TemporaryInstall install;
    CHexmoorInteFace client(std::make_unique<CEmbeddedBomCentre>());
    client.m_strEnterprise = u"ent";
    client.m_strUser = u"ann";
    client.m_strCredential = u"pw";
    client.m_strServer = server;
    // The first login makes the account and, over the stored login, keeps a token.
    if (client.autoLogin() != 1) return state.SkipWithError("the first login failed");
    for (auto _ : state)
        if (client.autoLogin() != 1) return state.SkipWithError("a login failed");
    state.counters["peak_MiB"] = peakRiseMiB([&] { benchmark::DoNotOptimize(client.autoLogin()); });
}

void BM_SilentLoginByToken(benchmark::State& state) { silentLogins(state, u"stored:8585"); }
void BM_SilentLoginByCredential(benchmark::State& state) { silentLogins(state, u"another:8585"); }

} // namespace

BENCHMARK(BM_SilentLoginByToken)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SilentLoginByCredential)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
