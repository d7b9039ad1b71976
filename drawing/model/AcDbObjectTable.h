// AcDbObjectTable: the objects of a database, owned and found by handle. One pointer a slot, open
// addressing, at most half full: an object costs 16 to 32 bytes here, where a node-based map costs 48.
#pragma once

#include "drawing/model/AcDbObject.h"

#include <cstdint>
#include <vector>

class AcDbObjectTable {
public:
    AcDbObjectTable() = default;
    ~AcDbObjectTable() { clear(); }
    AcDbObjectTable(const AcDbObjectTable&) = delete;
    AcDbObjectTable& operator=(const AcDbObjectTable&) = delete;

    AcDbObject* find(std::uint64_t handle) const;
    bool contains(std::uint64_t handle) const { return find(handle) != nullptr; }
    // Takes the object and gives true when its handle is free; gives false and leaves it otherwise.
    bool insert(AcDbObject* object);
    size_t size() const { return m_count; }
    void reserve(size_t count);
    // Deletes every object.
    void clear();

private:
    size_t slotOf(std::uint64_t handle) const;
    void grow(size_t slots);

    std::vector<AcDbObject*> m_slots;  // a power of two of them
    unsigned m_shift = 64;             // 64 less the number of bits of a slot's index
    size_t m_count = 0;
};
