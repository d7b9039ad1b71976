// Copies of files rewritten in place, kept in the install's Temp\ until the write has finished.
#include "support/InPlaceCopy.h"

#include "support/FileSystem.h"
#include "support/Locations.h"
#include "support/NativeFiles.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QxFs {
namespace {

// ".qxinplace-<pid>-XXXXXX": one copy per write under way.
constexpr std::string_view kCopyPrefix = ".qxinplace-";
constexpr std::string_view kCopyMagic = "QXINPLACE1\n";
// A copy older than this belongs to no live write, whatever process now has its pid.
constexpr time_t kLiveWriteSeconds = 10 * 60;

std::uint64_t fingerprint(std::string_view bytes) {
    std::uint64_t hash = 14695981039346656037ull;  // FNV-1a
    for (const unsigned char c : bytes) hash = (hash ^ c) * 1099511628211ull;
    return hash;
}

std::optional<std::string> copyFolder() {
    const CString install = GetLocalInstallDir();
    if (install.IsEmpty()) return std::nullopt;
    const CString temp = install + u"Temp";
    if (!IsFolder(temp) && !MakeFolder(temp)) return std::nullopt;
    return Resolve(temp);
}

// A copy as written: the target, the bytes to restore, and what the finished write holds.
struct Copy {
    std::string target;
    std::string_view oldBytes;
    size_t newSize = 0;
    std::uint64_t newFingerprint = 0;
};

std::string header(const std::string& target, size_t oldSize, std::string_view newBytes) {
    return std::string(kCopyMagic) + std::to_string(target.size()) + ' ' + std::to_string(oldSize) + ' ' +
           std::to_string(newBytes.size()) + ' ' + std::to_string(fingerprint(newBytes)) + '\n';
}

template <typename Number>
bool takeNumber(std::string_view& text, char end, Number& value) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop == text.data() || stop == text.data() + text.size() || *stop != end) return false;
    text.remove_prefix(static_cast<size_t>(stop - text.data()) + 1);
    return true;
}

// nullopt for a copy cut short: it was still being made, so its target was never touched.
std::optional<Copy> parseCopy(std::string_view bytes) {
    if (!bytes.starts_with(kCopyMagic)) return std::nullopt;
    bytes.remove_prefix(kCopyMagic.size());
    size_t targetSize = 0, oldSize = 0;
    Copy copy;
    if (!takeNumber(bytes, ' ', targetSize) || !takeNumber(bytes, ' ', oldSize) || !takeNumber(bytes, ' ', copy.newSize) ||
        !takeNumber(bytes, '\n', copy.newFingerprint))
        return std::nullopt;
    if (targetSize == 0 || targetSize > bytes.size() || bytes.size() - targetSize != oldSize) return std::nullopt;
    copy.target = std::string(bytes.substr(0, targetSize));
    copy.oldBytes = bytes.substr(targetSize);
    return copy;
}

bool writerMayStillRun(std::string_view name, const struct stat& st) {
    if (std::time(nullptr) - st.st_mtime > kLiveWriteSeconds) return false;
    const std::string_view rest = name.substr(kCopyPrefix.size());
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), pid);
    if (error != std::errc() || end == rest.data() || pid <= 0) return false;
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

// What became of one copy: whether it may go, and the target it put back, if any.
struct Outcome {
    bool settled = false;
    std::optional<std::string> restored;
};

// Puts the old bytes back unless the write finished. A copy cut short was still being made when its writer
// stopped, so its target was never touched.
Outcome settle(const std::string& copyPath) {
    std::string bytes;
    if (!Native::ReadAll(copyPath, bytes, false)) return {};
    const std::optional<Copy> copy = parseCopy(bytes);
    if (!copy) return {true, std::nullopt};
    struct stat target;
    if (::lstat(copy->target.c_str(), &target) != 0 || !S_ISREG(target.st_mode)) return {true, std::nullopt};
    std::string now;
    if (Native::ReadAll(copy->target, now, false) && now.size() == copy->newSize && fingerprint(now) == copy->newFingerprint)
        return {true, std::nullopt};
    if (!InPlace::OverwriteWhereItStands(copy->target, copy->oldBytes)) return {};
    return {true, copy->target};
}

} // namespace

namespace InPlace {

std::optional<std::string> KeepCopy(const std::string& target, std::string_view oldBytes, std::string_view newBytes) {
    const std::optional<std::string> folder = copyFolder();
    if (!folder) return std::nullopt;
    std::string path = Native::Join(*folder, std::string(kCopyPrefix) + std::to_string(::getpid()) + "-XXXXXX");
    const int fd = ::mkostemp(path.data(), O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    bool ok = ::fchmod(fd, 0600) == 0 && Native::WriteAll(fd, header(target, oldBytes.size(), newBytes)) &&
              Native::WriteAll(fd, target) && Native::WriteAll(fd, oldBytes) && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok) return path;
    ::unlink(path.c_str());
    return std::nullopt;
}

bool OverwriteWhereItStands(const std::string& target, std::string_view bytes) {
    const int fd = ::open(target.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return false;
    const bool ok = Native::WriteAll(fd, bytes) && ::fsync(fd) == 0;
    return (::close(fd) == 0) && ok;
}

} // namespace InPlace

std::vector<CString> RestoreUnfinishedInPlaceWrites() {
    std::vector<CString> restored;
    const std::optional<std::string> folder = copyFolder();
    if (!folder) return restored;
    std::vector<std::string> names;
    if (DIR* dir = ::opendir(folder->c_str())) {
        while (const dirent* entry = ::readdir(dir))
            if (std::string_view(entry->d_name).starts_with(kCopyPrefix)) names.emplace_back(entry->d_name);
        ::closedir(dir);
    }
    for (const std::string& name : names) {
        const std::string path = Native::Join(*folder, name);
        struct stat st;
        // Only this user's own copies are trusted to name a file to write.
        if (::lstat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_uid != ::geteuid()) continue;
        if (writerMayStillRun(name, st)) continue;
        const Outcome outcome = settle(path);
        if (outcome.restored) restored.push_back(CString::FromUtf8(*outcome.restored));
        if (outcome.settled) ::unlink(path.c_str());
    }
    return restored;
}

} // namespace QxFs
