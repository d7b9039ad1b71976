// Reading an Access file in a child process and taking its answer only when it is complete.
#include "support/database/AccessSnapshot.h"

#include "support/Encoding.h"
#include "support/database/AccessWire.h"
#include "support/database/WatchedChild.h"

#include <cerrno>
#include <clocale>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// Processor seconds the child may spend: far more than a sound file of any likely size needs, little
// enough that a file whose pages loop does not hang the command. The parent also ends it after 10 s of
// wall-clock time or above 512 MB of resident memory: a damaged file can make libmdb allocate without end.
constexpr rlim_t kChildCpuSeconds = 10;

bool writeAll(int fd, const std::string& data) {
    size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

bool readInChild(const std::string& bytes, int out) {
    // libmdb reports damaged pages on standard error; the parent's streams are not its to write.
    const int devNull = ::open("/dev/null", O_WRONLY);
    if (devNull >= 0) {
        ::dup2(devNull, STDOUT_FILENO);
        ::dup2(devNull, STDERR_FILENO);
    }
    const rlimit cpu{kChildCpuSeconds, kChildCpuSeconds};
    ::setrlimit(RLIMIT_CPU, &cpu);
    std::setlocale(LC_NUMERIC, "C");
    std::string own = bytes;  // libmdb reads from a buffer it may write to
    std::string wire;
    return EncodeAccessTables(own, wire) && writeAll(out, wire);
}

CString utf8(std::string_view s) { return CString(Utf8ToUtf16(s)); }

bool decodeValue(AccessWire::Reader& r, DbValue& value) {
    switch (r.u8()) {
    case AccessWire::kNull: value = DbValue(); break;
    case AccessWire::kInteger: value = DbValue::OfInteger(r.i64()); break;
    case AccessWire::kReal: value = DbValue::OfReal(r.f64()); break;
    case AccessWire::kText: value = DbValue::OfText(utf8(r.text())); break;
    default: return false;
    }
    return r.ok();
}

bool decodeTable(AccessWire::Reader& r, AccessTable& table) {
    table.name = utf8(r.text());
    table.system = r.u8() != 0;
    table.readable = r.u8() != 0;
    if (table.readable) {
        const uint32_t count = r.u32();
        for (uint32_t c = 0; c < count && r.ok(); ++c) {
            AccessColumn column;
            column.name = utf8(r.text());
            column.kind = static_cast<int>(r.u32());
            table.columns.push_back(column);
        }
    }
    for (;;) {
        const char tag = r.tag();
        if (!r.ok()) return false;
        if (tag == AccessWire::kEndTable) return true;
        if (tag != AccessWire::kRow) return false;
        std::vector<DbValue> row(table.columns.size());
        for (DbValue& value : row)
            if (!decodeValue(r, value)) return false;
        table.rows.push_back(std::move(row));
    }
}

bool decodeSnapshot(std::string_view wire, AccessSnapshot& snapshot) {
    AccessWire::Reader r(wire);
    for (;;) {
        const char tag = r.tag();
        if (!r.ok()) return false;
        if (tag == AccessWire::kEnd) return r.atEnd();
        if (tag != AccessWire::kTable) return false;
        AccessTable table;
        if (!decodeTable(r, table)) return false;
        snapshot.tables.push_back(std::move(table));
    }
}

} // namespace

bool ReadAccessSnapshot(const std::string& bytes, AccessSnapshot& snapshot) {
    snapshot.tables.clear();
    const ChildResult child = RunWatchedChild([&](int out) { return readInChild(bytes, out); });
    if (child.outcome != ChildOutcome::Finished || !decodeSnapshot(child.output, snapshot)) {
        snapshot.tables.clear();
        return false;
    }
    return true;
}
