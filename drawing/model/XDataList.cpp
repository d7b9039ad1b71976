// One block per object's xdata.
#include "drawing/model/XDataList.h"

#include "drawing/model/AcDbArena.h"

#include <algorithm>
#include <new>

// The block: this header, then the applications, then their items (which lie after their views).
struct XDataList::Block {
    std::uint32_t apps : 31;
    std::uint32_t onHeap : 1;
    std::uint32_t items;

    XDataApp* appArray() { return reinterpret_cast<XDataApp*>(reinterpret_cast<char*>(this) + kAppsAt); }
    ResItem* itemArray() { return reinterpret_cast<ResItem*>(reinterpret_cast<char*>(appArray()) + apps * sizeof(XDataApp)); }

    static constexpr size_t kAppsAt = 8;
};

bool operator==(const XDataItems& a, const ResItems& b) { return std::equal(a.begin(), a.end(), b.begin(), b.end()); }

XDataList::XDataList(std::span<const Run> runs, std::span<ResItem> items) {
    static_assert(sizeof(Block) <= Block::kAppsAt && alignof(XDataApp) <= 8 && alignof(ResItem) <= 8 &&
                  sizeof(XDataApp) % alignof(ResItem) == 0);
    // The views keep their items' distance in 32 bits: far more than a drawing's xdata can fill.
    if (runs.empty() || runs.size() + items.size() > (size_t{1} << 26)) return;
    const size_t bytes = Block::kAppsAt + runs.size() * sizeof(XDataApp) + items.size() * sizeof(ResItem);
    void* memory = nullptr;
    if (AcDbArena* arena = AcDbArenaScope::current()) memory = arena->allocate(bytes);
    const bool onHeap = memory == nullptr;
    if (onHeap) memory = ::operator new(bytes);
    m_block = new (memory) Block{static_cast<std::uint32_t>(runs.size()), onHeap ? 1u : 0u, static_cast<std::uint32_t>(items.size())};
    ResItem* item = m_block->itemArray();
    for (ResItem& taken : items) new (item++) ResItem(std::move(taken));
    const ResItem* first = m_block->itemArray();
    XDataApp* app = m_block->appArray();
    for (const Run& run : runs) {
        new (app++) XDataApp{*run.name, XDataItems(first, static_cast<std::uint32_t>(run.count))};
        first += run.count;
    }
}

XDataList::~XDataList() { release(); }

XDataList& XDataList::operator=(XDataList&& other) noexcept {
    if (this != &other) {
        release();
        m_block = other.m_block;
        other.m_block = nullptr;
    }
    return *this;
}

void XDataList::release() {
    if (m_block == nullptr) return;
    // Items may hold long text of their own; the rest is plain memory.
    ResItem* items = m_block->itemArray();
    for (std::uint32_t i = 0; i < m_block->items; ++i) items[i].~ResItem();
    if (m_block->onHeap) ::operator delete(m_block);
    m_block = nullptr;
}

const XDataApp* XDataList::begin() const { return m_block ? m_block->appArray() : nullptr; }

size_t XDataList::size() const { return m_block ? m_block->apps : 0; }
