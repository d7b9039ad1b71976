// Native paths and directories below the file-system boundary.
#include "support/NativeFiles.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace QxFs::Native {

std::string Join(const std::string& folder, const std::string& name) {
    if (folder.empty()) return name;
    if (folder.back() == '/') return folder + name;
    return folder + "/" + name;
}

std::string ParentOf(const std::string& native) {
    const size_t slash = native.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return native.substr(0, slash);
}

bool IsTemporaryName(std::string_view name) { return name.starts_with(kTemporaryPrefix); }

bool ReadAll(const std::string& native, std::string& bytes, bool followLinks) {
    const int fd = ::open(native.c_str(), O_RDONLY | O_CLOEXEC | (followLinks ? 0 : O_NOFOLLOW));
    if (fd < 0) return false;
    bytes.clear();
    char buffer[65536];
    ssize_t n = 0;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0 || (n < 0 && errno == EINTR))
        if (n > 0) bytes.append(buffer, static_cast<size_t>(n));
    ::close(fd);
    return n == 0;
}

bool WriteAll(int fd, std::string_view bytes) {
    for (size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

std::vector<std::string> ReadDirectory(const std::string& folder) {
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && !IsTemporaryName(name)) names.push_back(name);
    }
    ::closedir(dir);
    return names;
}

namespace {

bool inSupplementaryGroups(gid_t gid) {
    const int count = ::getgroups(0, nullptr);
    if (count <= 0) return false;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    const int got = ::getgroups(count, groups.data());
    for (int i = 0; i < got; ++i)
        if (groups[static_cast<size_t>(i)] == gid) return true;
    return false;
}

} // namespace

bool ModeGrants(const struct stat& st, mode_t otherBits) {
    if (st.st_uid == ::geteuid()) return (st.st_mode & (otherBits << 6)) == (otherBits << 6);
    if (st.st_gid == ::getegid() || inSupplementaryGroups(st.st_gid))
        return (st.st_mode & (otherBits << 3)) == (otherBits << 3);
    return (st.st_mode & otherBits) == otherBits;
}

} // namespace QxFs::Native
