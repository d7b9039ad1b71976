// XDataList: the xdata of one object, all its applications and items in one block of memory. A reader
// takes the block from its database's arena (AcDbArenaScope), so that a large drawing's xdata costs no
// heap allocation per application; a list made elsewhere lives on the heap and goes with its object.
#pragma once

#include "drawing/model/Resbuf.h"

#include <cstdint>
#include <span>
#include <vector>

// The items of one application, in the list that holds them: they lie at a distance from this view that
// it keeps in four bytes, so the view lives only where the list put it and is never copied.
class QX_API XDataItems {
public:
    XDataItems(const ResItem* first, std::uint32_t count)
        : m_offset(static_cast<std::uint32_t>(reinterpret_cast<const char*>(first) - reinterpret_cast<const char*>(this))),
          m_count(count) {}
    XDataItems(const XDataItems&) = delete;
    XDataItems& operator=(const XDataItems&) = delete;

    const ResItem* begin() const {
        return reinterpret_cast<const ResItem*>(reinterpret_cast<const char*>(this) + m_offset);
    }
    const ResItem* end() const { return begin() + m_count; }
    size_t size() const { return m_count; }
    bool empty() const { return m_count == 0; }
    const ResItem& operator[](size_t index) const { return begin()[index]; }
    ResItems copy() const { return ResItems(begin(), end()); }

    friend QX_API bool operator==(const XDataItems& a, const ResItems& b);

private:
    std::uint32_t m_offset;
    std::uint32_t m_count;
};

// The xdata of one application, without its 1001 item. The name is shared by every object of the
// database that has xdata of that application.
struct QX_API XDataApp {
    const CString& name;
    XDataItems items;
};

class QX_API XDataList {
public:
    // One application while a list is put together: its name and how many of the items are its own.
    struct Run {
        const CString* name;
        size_t count;
    };

    XDataList() = default;
    // The runs take the items in order; their counts add up to the number of items.
    // Moves the items into the list's own block.
    XDataList(std::span<const Run> runs, std::span<ResItem> items);
    ~XDataList();
    XDataList(XDataList&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
    XDataList& operator=(XDataList&& other) noexcept;
    XDataList(const XDataList&) = delete;
    XDataList& operator=(const XDataList&) = delete;

    const XDataApp* begin() const;
    const XDataApp* end() const { return begin() + size(); }
    size_t size() const;
    bool empty() const { return size() == 0; }

private:
    struct Block;
    void release();

    Block* m_block = nullptr;
};
