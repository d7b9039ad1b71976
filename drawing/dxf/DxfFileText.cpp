// Reading a DXF file piece by piece into one reserved range.
#include "drawing/dxf/DxfFileText.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// One huge page: the range asks for huge pages, so that the text costs one page fault per piece rather than
// one per 4 KiB. Large enough that a read is cheap next to the work on its bytes, small enough to keep
// little resident.
constexpr size_t kChunk = size_t{2} << 20;
// Released memory is given back in steps of this size, not after every record: a quarter of a piece, so
// that little more than the piece in hand stays resident.
constexpr size_t kReleaseStep = kChunk / 4;

} // namespace

std::unique_ptr<DxfFileText> DxfFileText::open(const std::string& nativePath) {
    const int descriptor = ::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat info {};
    if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return nullptr;
    }
    // Pages of the range cost nothing until bytes are read into them.
    const size_t reserved = static_cast<size_t>(info.st_size) + 1;
    const size_t mappingLength = reserved + kChunk;
    void* mapping = mmap(nullptr, mappingLength, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapping == MAP_FAILED) {
        ::close(descriptor);
        return nullptr;
    }
    const auto address = reinterpret_cast<std::uintptr_t>(mapping);
    char* base = static_cast<char*>(mapping) + ((kChunk - address % kChunk) % kChunk);
    madvise(base, reserved, MADV_HUGEPAGE);  // a hint: without huge pages the text reads all the same
    std::unique_ptr<DxfFileText> file(new DxfFileText(descriptor, mapping, mappingLength, base, reserved));
    file->more();
    return file;
}

DxfFileText::~DxfFileText() {
    munmap(m_mapping, m_mappingLength);
    ::close(m_descriptor);
}

std::string_view DxfFileText::more() {
    // One byte of the range stays free: a file that grew since it was opened is read as far as it was.
    const size_t room = m_reserved - 1 - m_filled;
    if (m_atEnd || room == 0) return text();
    const size_t wanted = room < kChunk ? room : kChunk;
    size_t got = 0;
    while (got < wanted) {
        const ssize_t n = ::read(m_descriptor, m_base + m_filled + got, wanted - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) m_failed = true;
        if (n <= 0) {
            m_atEnd = true;
            break;
        }
        got += static_cast<size_t>(n);
    }
    m_filled += got;
    return text();
}

void DxfFileText::releaseBefore(const char* position) {
    if (position < m_base || position > m_base + m_filled) return;
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t end = static_cast<size_t>(position - m_base) / page * page;
    if (end < m_released + kReleaseStep) return;
    madvise(m_base + m_released, end - m_released, MADV_DONTNEED);
    m_released = end;
}
