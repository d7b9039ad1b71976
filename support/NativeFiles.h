// Native paths and directories below the file-system boundary: joining, listing, and judging permissions
// the way an unprivileged process would, also when the tests run as root.
#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace QxFs::Native {

std::string Join(const std::string& folder, const std::string& name);
std::string ParentOf(const std::string& native);

// The names in a folder, without "." and "..", and without the atomic writer's temporary files.
std::vector<std::string> ReadDirectory(const std::string& folder);

// Every byte of a file (false when it cannot be opened or read to its end; a link is refused unless
// followLinks), and every byte written to a descriptor (retrying interrupted and short writes).
bool ReadAll(const std::string& native, std::string& bytes, bool followLinks = true);
bool WriteAll(int fd, std::string_view bytes);

// Temporary files of the atomic writer: ".qxtmp-<pid>-XXXXXX".
inline constexpr std::string_view kTemporaryPrefix = ".qxtmp-";
bool IsTemporaryName(std::string_view name);

// Whether the mode bits give the access (S_IWOTH, S_IXOTH, ... in the "other" position) to this process's
// class of user: owner, group (effective or supplementary) or other. Root is judged like anyone else, so a
// file of mode 0444 is read-only for every writer of this program.
bool ModeGrants(const struct stat& st, mode_t otherBits);

} // namespace QxFs::Native
