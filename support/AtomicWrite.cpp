// Rewriting a file whole through a temporary file renamed over it, so that a crash never leaves half a file.
#include "support/FileSystem.h"
#include "support/InPlaceCopy.h"
#include "support/NativeFiles.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QxFs {
namespace {

// A temporary file older than this belongs to no live write, whatever process now has its pid.
constexpr time_t kStaleAfterSeconds = 10 * 60;

bool processRuns(pid_t pid) { return ::kill(pid, 0) == 0 || errno == EPERM; }

// ".qxtmp-<pid>-XXXXXX" left by a writer that no longer runs, or so old that no write can still use it.
bool isStaleTemporary(const std::string& folder, std::string_view name) {
    struct stat st;
    const std::string path = Native::Join(folder, std::string(name));
    if (::lstat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    if (std::time(nullptr) - st.st_mtime > kStaleAfterSeconds) return true;
    const std::string_view rest = name.substr(Native::kTemporaryPrefix.size());
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), pid);
    if (error != std::errc() || end == rest.data() || pid <= 0) return false;
    return !processRuns(pid);
}

void removeStaleTemporaries(const std::string& folder) {
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return;
    std::vector<std::string> stale;
    while (const dirent* entry = ::readdir(dir))
        if (Native::IsTemporaryName(entry->d_name) && isStaleTemporary(folder, entry->d_name)) stale.push_back(entry->d_name);
    ::closedir(dir);
    for (const std::string& name : stale) ::unlink(Native::Join(folder, name).c_str());
}

// Where the folder may not be written, the file is rewritten where it stands, as the Windows writers do. Its
// bytes are first kept in the install's Temp\ (no copy, no write); a write that fails puts them back at once,
// one cut off by a kill is undone at the next start of the module.
bool writeInPlace(const std::string& native, std::string_view bytes, std::optional<mode_t> forcedMode) {
    std::string old;
    if (!Native::ReadAll(native, old)) return false;
    const std::optional<std::string> copy = InPlace::KeepCopy(native, old, bytes);
    if (!copy) return false;
    bool ok = !forcedMode || ::chmod(native.c_str(), *forcedMode) == 0;
    ok = ok && InPlace::OverwriteWhereItStands(native, bytes);
    if (ok || InPlace::OverwriteWhereItStands(native, old)) ::unlink(copy->c_str());
    return ok;
}

thread_local DurableWriteBatch* t_batch = nullptr;

bool makeDurable(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    const bool ok = ::fsync(fd) == 0;
    return (::close(fd) == 0) && ok;
}

bool writeThroughTemporary(const std::string& native, std::string_view bytes, mode_t mode) {
    const std::string folder = Native::ParentOf(native);
    removeStaleTemporaries(folder);
    std::string temp = Native::Join(folder, std::string(Native::kTemporaryPrefix) + std::to_string(::getpid()) + "-XXXXXX");
    const int fd = ::mkstemp(temp.data());
    if (fd < 0) return false;
    DurableWriteBatch* batch = DurableWriteBatch::Active();
    bool ok = ::fchmod(fd, mode) == 0 && Native::WriteAll(fd, bytes);
    // In a batch the data starts on its way to the disk now; the commit waits for all of it at once.
    if (batch != nullptr) ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
    else ok = ok && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok && batch != nullptr) {
        batch->Defer(std::move(temp), native);
        return true;
    }
    ok = ok && ::rename(temp.c_str(), native.c_str()) == 0;
    if (!ok) ::unlink(temp.c_str());
    return ok;
}

mode_t defaultNewFileMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// `forcedMode` is the mode of every write (a private file); else a file keeps its mode and a new one gets
// `newFileMode`, or 0666 less the umask.
bool writeFile(const CString& logicPath, std::string_view bytes, std::optional<mode_t> newFileMode,
               std::optional<mode_t> forcedMode) {
    std::optional<std::string> native = Resolve(logicPath);
    if (!native) native = NativeTarget(logicPath);
    if (!native) return false;

    // What an in-place write would refuse is refused: judged by the mode bits, since root may write anything.
    struct stat folder;
    if (::stat(Native::ParentOf(*native).c_str(), &folder) != 0) return false;
    const bool folderWritable = Native::ModeGrants(folder, S_IWOTH | S_IXOTH);
    struct stat target;
    if (::stat(native->c_str(), &target) != 0) {
        if (!folderWritable) return false;
        return writeThroughTemporary(*native, bytes, forcedMode.value_or(newFileMode.value_or(defaultNewFileMode())));
    }
    if (!S_ISREG(target.st_mode) || !Native::ModeGrants(target, S_IWOTH)) return false;
    if (!folderWritable) return writeInPlace(*native, bytes, forcedMode);
    return writeThroughTemporary(*native, bytes, forcedMode.value_or(target.st_mode & 07777));
}

} // namespace

DurableWriteBatch::DurableWriteBatch() {
    if (t_batch != nullptr) return;
    t_batch = this;
    m_inForce = true;
}

DurableWriteBatch::~DurableWriteBatch() {
    Commit();
    if (m_inForce) t_batch = nullptr;
}

DurableWriteBatch* DurableWriteBatch::Active() {
    return t_batch;
}

void DurableWriteBatch::Defer(std::string temporary, std::string target) {
    m_pending.push_back({std::move(temporary), std::move(target)});
}

bool DurableWriteBatch::Commit() {
    std::vector<Pending> pending;
    pending.swap(m_pending);
    // Every temporary is durable before any target changes.
    std::vector<bool> durable;
    durable.reserve(pending.size());
    for (const Pending& write : pending) durable.push_back(makeDurable(write.temporary));
    bool ok = true;
    for (size_t i = 0; i < pending.size(); ++i) {
        if (durable[i] && ::rename(pending[i].temporary.c_str(), pending[i].target.c_str()) == 0) continue;
        ::unlink(pending[i].temporary.c_str());
        ok = false;
    }
    return ok;
}

bool WriteAtomic(const CString& logicPath, std::string_view bytes, std::optional<mode_t> newFileMode) {
    return writeFile(logicPath, bytes, newFileMode, std::nullopt);
}

bool WritePrivate(const CString& logicPath, std::string_view bytes) {
    return writeFile(logicPath, bytes, std::nullopt, mode_t{0600});
}

} // namespace QxFs
