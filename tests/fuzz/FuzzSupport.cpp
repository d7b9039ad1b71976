// The scratch folder and the silent host of the harnesses.
#include "FuzzSupport.h"

#include "platform/InstallPath.h"
#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace fuzz {
namespace {

constexpr std::string_view kPrefix = "qxfuzz-";

fs::path scratchBase() {
    std::error_code ec;
    if (fs::is_directory("/dev/shm", ec) && ::access("/dev/shm", W_OK) == 0) return "/dev/shm";
    return fs::temp_directory_path(ec);
}

// A folder "qxfuzz-<pid>" whose process is gone was left by a fuzzer that stopped on a finding.
void removeFoldersOfDeadFuzzers(const fs::path& base) {
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(base, ec)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(kPrefix, 0) != 0) continue;
        const long pid = std::strtol(name.c_str() + kPrefix.size(), nullptr, 10);
        if (pid <= 0 || (::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)) fs::remove_all(entry.path(), ec);
    }
}

class Scratch {
public:
    Scratch() {
        const fs::path base = scratchBase();
        removeFoldersOfDeadFuzzers(base);
        m_path = (base / (std::string(kPrefix) + std::to_string(::getpid()))).string();
        fs::create_directories(m_path);
    }
    ~Scratch() {
        std::error_code ec;
        fs::remove_all(m_path, ec);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

class SilentOutput final : public IHostOutput {
public:
    void Print(const CString&) override {}
    void MessageBox(const CString&, const CString&, unsigned) override {}
};

} // namespace

const std::string& ScratchFolder() {
    static const Scratch scratch;
    return scratch.path();
}

CString WriteScratchFile(const std::string& relative, std::string_view bytes) {
    const fs::path path = fs::path(ScratchFolder()) / relative;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return QxFs::FromNative(path.string());
}

void RemoveScratchFile(const std::string& relative) {
    std::error_code ec;
    fs::remove(fs::path(ScratchFolder()) / relative, ec);
}

CString ScratchLogicFolder() { return QxFs::FromNative(ScratchFolder()) + u"\\"; }

void UseScratchAsInstallFolder() { SetCorvaneInstallDirOverride(ScratchLogicFolder()); }

void SilenceHost() {
    static SilentOutput silent;
    SetHostOutput(&silent);
}

} // namespace fuzz
