// AcDbArena: the memory of the objects a reader puts into one database. Objects are cut one after the
// other from large chunks that ask for huge pages, so that a large drawing costs neither a heap allocation
// per object nor a page fault per 4 KiB; the chunks go with the database, all at once.
//
// While an AcDbArenaScope stands on a thread, every AcDbObject made there comes from its arena; elsewhere
// objects come from the heap, as always. Deleting an object runs its destructor either way; only a heap
// object gives its memory back at once.
#pragma once

#include "support/CString.h"

#include <cstddef>
#include <memory>
#include <vector>

class QX_API AcDbArena {
public:
    AcDbArena() = default;
    ~AcDbArena();
    AcDbArena(const AcDbArena&) = delete;
    AcDbArena& operator=(const AcDbArena&) = delete;

    // Memory for `bytes`, aligned for any object of the model (8 bytes); null when the system has none.
    void* allocate(size_t bytes);
    size_t chunkCount() const { return m_chunks.size(); }

private:
    std::vector<void*> m_chunks;
    char* m_next = nullptr;
    char* m_end = nullptr;
};

class QX_API AcDbArenaScope {
public:
    explicit AcDbArenaScope(AcDbArena& arena);
    ~AcDbArenaScope();
    AcDbArenaScope(const AcDbArenaScope&) = delete;
    AcDbArenaScope& operator=(const AcDbArenaScope&) = delete;

    // The arena of the scope standing on this thread, or null.
    static AcDbArena* current();

private:
    AcDbArena* m_previous;
};
