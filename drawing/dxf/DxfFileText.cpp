// Reading a DXF file piece by piece through a moving window.
#include "drawing/dxf/DxfFileText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

// Large enough that a read is cheap next to the work on its bytes, small enough to stay in the caches.
constexpr size_t kPiece = size_t{64} << 10;
// A window holds a few pieces, so that the bytes copied on moving on (the record in hand) are few.
constexpr size_t kWindow = 4 * kPiece;

} // namespace

std::unique_ptr<DxfFileText> DxfFileText::open(const std::string& nativePath) {
    const int descriptor = ::open(nativePath.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat info {};
    if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return nullptr;
    }
    std::unique_ptr<DxfFileText> file(new DxfFileText(descriptor, static_cast<size_t>(info.st_size)));
    // A small file gets a window of its own size, not a large one.
    file->m_window = file->takeWindow(std::min(kWindow, file->m_size + 1));
    file->readPiece();
    return file;
}

DxfFileText::~DxfFileText() {
    ::close(m_descriptor);
}

DxfFileText::Window DxfFileText::takeWindow(size_t capacity) {
    if (m_spare.capacity >= capacity) return std::exchange(m_spare, Window{});
    return {std::make_unique_for_overwrite<char[]>(capacity), capacity};
}

std::string_view DxfFileText::more(size_t keepFrom) {
    m_start += std::min(keepFrom, m_filled - m_start);
    if (!m_atEnd && m_window.capacity - m_filled < kPiece) moveToAnotherWindow();
    if (!m_atEnd) readPiece();
    return text();
}

void DxfFileText::release() {
    if (m_retired.empty()) return;
    for (Window& window : m_retired)
        if (window.capacity > m_spare.capacity) m_spare = std::move(window);
    m_retired.clear();
}

// A line longer than a window doubles what is kept, so that copying it stays linear in its length.
void DxfFileText::moveToAnotherWindow() {
    const size_t kept = m_filled - m_start;
    Window next = takeWindow(std::max(kWindow, 2 * kept + kPiece));
    std::memcpy(next.bytes.get(), m_window.bytes.get() + m_start, kept);
    m_retired.push_back(std::move(m_window));
    m_window = std::move(next);
    m_start = 0;
    m_filled = kept;
}

// A file that grew since it was opened is read as far as it was then.
void DxfFileText::readPiece() {
    const size_t wanted = std::min({kPiece, m_window.capacity - m_filled, m_size - m_read});
    size_t got = 0;
    while (got < wanted) {
        const ssize_t n = ::read(m_descriptor, m_window.bytes.get() + m_filled + got, wanted - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) m_failed = true;
        if (n <= 0) break;
        got += static_cast<size_t>(n);
    }
    m_filled += got;
    m_read += got;
    if (got < wanted || wanted == 0 || m_read == m_size) m_atEnd = true;
}
