// Which engine reads a database file: decided by the file's first bytes, not by its name, so that a
// SQLite file named word.mdb is read as what it is.
#include "support/FileSystem.h"
#include "support/database/DatabaseEngine.h"

#include <string_view>

namespace {

bool isSqliteFile(std::string_view bytes) {
    constexpr std::string_view kMagic("SQLite format 3\0", 16);
    return bytes.substr(0, kMagic.size()) == kMagic;
}

// Jet 3, Jet 4 and ACE files open with the same signature; the version byte gives the page size, and a
// file that does not end on a page boundary has been cut short.
bool isAccessFile(std::string_view bytes) {
    constexpr std::string_view kJet("\0\1\0\0Standard Jet DB\0", 20);
    constexpr std::string_view kAce("\0\1\0\0Standard ACE DB\0", 20);
    constexpr size_t kVersionOffset = 0x14;
    if (bytes.size() <= kVersionOffset) return false;
    const std::string_view head = bytes.substr(0, kJet.size());
    if (head != kJet && head != kAce) return false;
    const size_t pageSize = bytes[kVersionOffset] == 0 ? 2048 : 4096;
    return bytes.size() % pageSize == 0;
}

} // namespace

std::unique_ptr<IDatabaseEngine> OpenDatabaseEngine(const CString& logicPath) {
    std::string bytes;
    if (!QxFs::ReadBytes(logicPath, bytes)) return nullptr;
    if (isSqliteFile(bytes)) {
        const auto native = QxFs::Resolve(logicPath);
        return native ? OpenSqliteEngine(*native) : nullptr;
    }
    if (isAccessFile(bytes)) return OpenAccessEngine(std::move(bytes));
    return nullptr;
}
