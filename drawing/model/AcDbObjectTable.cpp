// The object table.
#include "drawing/model/AcDbObjectTable.h"

size_t AcDbObjectTable::slotOf(std::uint64_t handle) const {
    const size_t mask = m_slots.size() - 1;
    // Handles are mostly consecutive: they keep their order in the table, so that objects read one after
    // the other sit side by side. The higher bits are folded in, so that handles far apart spread too.
    const unsigned bits = 64 - m_shift;
    const std::uint64_t folded = handle ^ (handle >> bits) ^ (handle >> (2 * bits)) ^ (handle >> (3 * bits));
    size_t slot = static_cast<size_t>(folded) & mask;
    while (m_slots[slot] != nullptr && m_slots[slot]->objectHandle().value() != handle) slot = (slot + 1) & mask;
    return slot;
}

AcDbObject* AcDbObjectTable::find(std::uint64_t handle) const {
    if (m_slots.empty()) return nullptr;
    return m_slots[slotOf(handle)];
}

bool AcDbObjectTable::insert(AcDbObject* object) {
    // At most three quarters full: handles are mostly consecutive and fill runs of slots, so probes stay short.
    if (4 * (m_count + 1) > 3 * m_slots.size()) grow(m_slots.empty() ? 64 : 2 * m_slots.size());
    AcDbObject*& slot = m_slots[slotOf(object->objectHandle().value())];
    if (slot != nullptr) return false;
    slot = object;
    ++m_count;
    return true;
}

void AcDbObjectTable::reserve(size_t count) {
    size_t slots = m_slots.empty() ? 64 : m_slots.size();
    while (4 * count > 3 * slots) slots *= 2;
    if (slots > m_slots.size()) grow(slots);
}

void AcDbObjectTable::grow(size_t slots) {
    std::vector<AcDbObject*> old(slots, nullptr);
    old.swap(m_slots);
    m_shift = 64;
    for (size_t size = slots; size > 1; size /= 2) --m_shift;
    for (AcDbObject* object : old)
        if (object != nullptr) m_slots[slotOf(object->objectHandle().value())] = object;
}

void AcDbObjectTable::clear() {
    for (AcDbObject*& object : m_slots) {
        delete object;
        object = nullptr;
    }
    m_slots.clear();
    m_slots.shrink_to_fit();
    m_count = 0;
}
