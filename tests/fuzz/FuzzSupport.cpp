// The scratch folder and the silent host of the harnesses.
#include "FuzzSupport.h"

#include "platform/InstallPath.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "support/FileSystem.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstdio>
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

// Nobody answers: a harness must never wait for a line on the terminal.
class SilentPrompts final : public IPromptService {
public:
    std::optional<CString> AskText(const CString&) override { return std::nullopt; }
    std::optional<CString> AskSecret(const CString&) override { return std::nullopt; }
    std::optional<bool> AskYesNo(const CString&) override { return std::nullopt; }
    std::optional<int> AskChoice(const CString&, const CStringArray&) override { return std::nullopt; }
};

// Set when the harness starts, before libFuzzer gives it any input.
struct SilentHost {
    SilentHost() {
        static SilentOutput silent;
        SetHostOutput(&silent);
        static SilentPrompts prompts;
        SetHostPrompts(&prompts);
    }
} const g_silentHost;

} // namespace

const std::string& ScratchFolder() {
    static const Scratch scratch;
    return scratch.path();
}

CString WriteScratchFile(const std::string& relative, std::string_view bytes) {
    const fs::path path = fs::path(ScratchFolder()) / relative;
    // A path the file system refuses (a name too long, a file where a folder should be) is left unwritten.
    std::error_code ec;
    fs::create_directories(path.parent_path(), ec);
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return QxFs::FromNative(path.string());
}

void RemoveScratchFile(const std::string& relative) {
    std::error_code ec;
    fs::remove(fs::path(ScratchFolder()) / relative, ec);
}

void ClearScratchFolder(const std::string& relative) {
    std::error_code ec;
    const fs::path folder = fs::path(ScratchFolder()) / relative;
    fs::remove_all(folder, ec);
    fs::create_directories(folder, ec);
}

std::vector<std::string_view> SplitSections(const uint8_t* data, size_t size, size_t count) {
    std::vector<std::string_view> sections;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    while (sections.size() + 1 < count) {
        const size_t zero = rest.find('\0');
        if (zero == std::string_view::npos) break;
        sections.push_back(rest.substr(0, zero));
        rest.remove_prefix(zero + 1);
    }
    sections.push_back(rest);
    sections.resize(count);
    return sections;
}

void Require(bool holds, const char* promise) {
    if (holds) return;
    std::fprintf(stderr, "\n==fuzz== broken promise: %s\n", promise);
    std::abort();
}

CString ScratchLogicFolder() { return QxFs::FromNative(ScratchFolder()) + u"\\"; }

void UseScratchAsInstallFolder() { SetCorvaneInstallDirOverride(ScratchLogicFolder()); }

} // namespace fuzz
