// The objects' arena.
#include "drawing/model/AcDbArena.h"

#include <cstdlib>
#include <sys/mman.h>

namespace {

// Chunks start small, for the many small drawings of a project, and double up to one huge page; only chunks
// of that size ask for huge pages, which would cost a small drawing 2 MiB of cleared memory.
constexpr size_t kFirstChunk = size_t{64} << 10;
constexpr size_t kHugePage = size_t{2} << 20;
constexpr size_t kAlign = 8;

thread_local AcDbArena* t_current = nullptr;

} // namespace

AcDbArena::~AcDbArena() {
    for (void* chunk : m_chunks) std::free(chunk);
}

void* AcDbArena::allocate(size_t bytes) {
    bytes = (bytes + kAlign - 1) / kAlign * kAlign;
    if (bytes > kFirstChunk) return nullptr;
    if (m_next == nullptr || static_cast<size_t>(m_end - m_next) < bytes) {
        const size_t size = m_chunks.size() >= 5 ? kHugePage : kFirstChunk << m_chunks.size();
        void* chunk = std::aligned_alloc(size, size);
        if (chunk == nullptr) return nullptr;
        // A hint: without huge pages the arena works all the same.
        if (size == kHugePage) madvise(chunk, size, MADV_HUGEPAGE);
        m_chunks.push_back(chunk);
        m_next = static_cast<char*>(chunk);
        m_end = m_next + size;
    }
    void* memory = m_next;
    m_next += bytes;
    return memory;
}

AcDbArenaScope::AcDbArenaScope(AcDbArena& arena) : m_previous(t_current) {
    t_current = &arena;
}

AcDbArenaScope::~AcDbArenaScope() {
    t_current = m_previous;
}

AcDbArena* AcDbArenaScope::current() {
    return t_current;
}
