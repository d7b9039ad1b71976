// Which engine reads a database file: decided by the file's first 4 KB, not by its name, so that a SQLite
// file named word.mdb is read as what it is.
#include "support/FileSystem.h"
#include "support/database/DatabaseEngine.h"

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace {

bool isSqliteFile(std::string_view head) {
    constexpr std::string_view kMagic("SQLite format 3\0", 16);
    return head.substr(0, kMagic.size()) == kMagic;
}

// Jet 3, Jet 4 and ACE files open with the same signature.
bool hasAccessSignature(std::string_view head) {
    constexpr std::string_view kJet("\0\1\0\0Standard Jet DB\0", 20);
    constexpr std::string_view kAce("\0\1\0\0Standard ACE DB\0", 20);
    const std::string_view start = head.substr(0, kJet.size());
    return start == kJet || start == kAce;
}

// The version byte gives the page size, and a file that does not end on a page boundary has been cut short.
bool isWholeAccessFile(std::string_view bytes) {
    constexpr size_t kVersionOffset = 0x14;
    if (bytes.size() <= kVersionOffset || !hasAccessSignature(bytes)) return false;
    const size_t pageSize = bytes[kVersionOffset] == 0 ? 2048 : 4096;
    return bytes.size() % pageSize == 0;
}

// The first bytes of the file, enough for either signature; a database may be gigabytes long.
std::optional<std::string> readHead(const std::string& nativePath) {
    constexpr size_t kHeadBytes = 4096;
    std::ifstream in(nativePath, std::ios::binary);
    if (!in) return std::nullopt;
    std::string head(kHeadBytes, '\0');
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<size_t>(in.gcount()));
    return head;
}

} // namespace

std::unique_ptr<IDatabaseEngine> OpenDatabaseEngine(const CString& logicPath) {
    const auto native = QxFs::Resolve(logicPath);
    if (!native) return nullptr;
    const auto head = readHead(*native);
    if (!head) return nullptr;
    if (isSqliteFile(*head)) return OpenSqliteEngine(*native);
    // Only an Access file is read whole: the reading process takes it as bytes.
    if (!hasAccessSignature(*head)) return nullptr;
    std::string bytes;
    if (!QxFs::ReadBytes(logicPath, bytes) || !isWholeAccessFile(bytes)) return nullptr;
    return OpenAccessEngine(std::move(bytes));
}
