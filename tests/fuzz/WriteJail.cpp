// The read-only mount namespace of the harnesses that write where their input says.
#include "WriteJail.h"

#include <filesystem>
#include <fstream>
#include <sched.h>
#include <sstream>
#include <sys/mount.h>

namespace fs = std::filesystem;

namespace fuzz {
namespace {

// Mount points are written with "\040" for a blank and the like.
std::string unescapeMountPoint(const std::string& text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            plain += static_cast<char>(std::stoi(text.substr(i + 1, 3), nullptr, 8));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::vector<std::string> mountPoints() {
    std::vector<std::string> points;
    std::ifstream info("/proc/self/mountinfo");
    std::string line;
    while (std::getline(info, line)) {
        std::istringstream fields(line);
        std::string id, parent, device, root, point;
        if (fields >> id >> parent >> device >> root >> point) points.push_back(unescapeMountPoint(point));
    }
    return points;
}

bool startsWith(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

// The folder a path option names: the value itself when it ends in "/", else its parent.
std::string folderOfOption(const std::string& value) {
    if (!value.empty() && value.back() == '/') return value;
    const fs::path parent = fs::path(value).parent_path();
    return parent.empty() ? std::string(".") : parent.string();
}

} // namespace

std::vector<std::string> FoldersLibFuzzerWrites(int argc, char** argv) {
    std::vector<std::string> folders;
    bool corpusSeen = false;
    bool artifactPrefixGiven = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (!startsWith(argument, "-")) {
            std::error_code ec;
            if (!corpusSeen && fs::is_directory(argument, ec)) folders.push_back(argument);
            corpusSeen = corpusSeen || fs::is_directory(argument, ec);
            continue;
        }
        for (const char* option : {"-artifact_prefix=", "-exact_artifact_path=", "-merge_control_file="}) {
            if (!startsWith(argument, option)) continue;
            folders.push_back(folderOfOption(argument.substr(std::string(option).size())));
            artifactPrefixGiven = artifactPrefixGiven || startsWith(argument, "-artifact_prefix=");
        }
    }
    if (!artifactPrefixGiven) folders.push_back(".");
    // A merge keeps its control file in the temporary folder.
    std::error_code ec;
    folders.push_back(fs::temp_directory_path(ec).string());
    return folders;
}

bool WriteOnlyInto(const std::vector<std::string>& folders) {
    if (::unshare(CLONE_NEWNS) != 0) return false;
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    for (const std::string& folder : folders) {
        std::error_code ec;
        fs::create_directories(folder, ec);
    }
    // Everything read-only first, then the folders bound over themselves and made writable again: a
    // process started from a harness (a merge) inherits the binds and must not make its own read-only.
    for (const std::string& point : mountPoints()) {
        if (startsWith(point, "/proc") || startsWith(point, "/sys")) continue;
        ::mount(nullptr, point.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr);
    }
    for (const std::string& folder : folders) {
        std::error_code ec;
        const std::string path = fs::canonical(folder, ec).string();
        if (ec) continue;
        ::mount(path.c_str(), path.c_str(), nullptr, MS_BIND | MS_REC, nullptr);
        ::mount(nullptr, path.c_str(), nullptr, MS_BIND | MS_REMOUNT, nullptr);
    }
    return true;
}

} // namespace fuzz
