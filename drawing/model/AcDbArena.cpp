// The objects' arena.
#include "drawing/model/AcDbArena.h"

#include <cstdlib>
#include <sys/mman.h>

namespace {

// One huge page.
constexpr size_t kChunk = size_t{2} << 20;
constexpr size_t kAlign = 8;

thread_local AcDbArena* t_current = nullptr;

} // namespace

AcDbArena::~AcDbArena() {
    for (void* chunk : m_chunks) std::free(chunk);
}

void* AcDbArena::allocate(size_t bytes) {
    bytes = (bytes + kAlign - 1) / kAlign * kAlign;
    if (bytes > kChunk) return nullptr;
    if (m_next == nullptr || static_cast<size_t>(m_end - m_next) < bytes) {
        void* chunk = std::aligned_alloc(kChunk, kChunk);
        if (chunk == nullptr) return nullptr;
        madvise(chunk, kChunk, MADV_HUGEPAGE);  // a hint: without huge pages the arena works all the same
        m_chunks.push_back(chunk);
        m_next = static_cast<char*>(chunk);
        m_end = m_next + kChunk;
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
