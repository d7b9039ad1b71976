// The stack of open elements of the well-formedness walk.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

// Starts with room for 6 entries and grows to old size * 2 + 6 when full: deep documents cost a few
// reallocations, shallow ones none.
template <typename T>
class CNodeStack {
public:
    static constexpr int kInitialRoom = 6;

    CNodeStack() : m_items(kInitialRoom) {}

    void Push(const T& item) {
        if (m_nCount == Capacity()) grow();
        m_items[static_cast<size_t>(m_nCount++)] = item;
    }
    void Pop() { --m_nCount; }
    T& Top() { return At(m_nCount - 1); }
    T& At(int index) { return m_items[static_cast<size_t>(index)]; }
    int GetCount() const { return m_nCount; }
    bool IsEmpty() const { return m_nCount == 0; }
    int Capacity() const { return static_cast<int>(m_items.size()); }

private:
    void grow() {
        std::vector<T> bigger(m_items.size() * 2 + 6);
        for (int i = 0; i < m_nCount; ++i) bigger[static_cast<size_t>(i)] = std::move(m_items[static_cast<size_t>(i)]);
        m_items.swap(bigger);
    }

    std::vector<T> m_items;
    int m_nCount = 0;
};
