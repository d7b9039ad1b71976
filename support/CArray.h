// CArray and CStringArray: growable arrays with the index-based operations the logic uses.
#pragma once

#include "support/CString.h"

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <vector>

// ARG_TYPE only mirrors the two-parameter form in signatures; storage is a std::vector.
template <typename TYPE, typename ARG_TYPE = const TYPE&>
class CArray {
public:
    using value_type = TYPE;

    CArray() = default;
    CArray(std::initializer_list<TYPE> items) : m_items(items) {}

    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    bool IsEmpty() const { return m_items.empty(); }
    int GetUpperBound() const { return GetSize() - 1; }

    TYPE& ElementAt(int index) { return m_items.at(checked(index)); }
    const TYPE& GetAt(int index) const { return m_items.at(checked(index)); }
    TYPE& operator[](int index) { return ElementAt(index); }
    const TYPE& operator[](int index) const { return GetAt(index); }
    void SetAt(int index, const TYPE& value) { m_items.at(checked(index)) = value; }

    int Add(const TYPE& value) { m_items.push_back(value); return GetSize() - 1; }
    int Add(TYPE&& value) { m_items.push_back(std::move(value)); return GetSize() - 1; }
    void InsertAt(int index, const TYPE& value, int count = 1) {
        if (index < 0 || index > GetSize()) throw std::out_of_range("CArray::InsertAt");
        m_items.insert(m_items.begin() + index, static_cast<size_t>(count), value);
    }
    void RemoveAt(int index, int count = 1) {
        if (index < 0 || count < 0 || index + count > GetSize()) throw std::out_of_range("CArray::RemoveAt");
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }
    void RemoveAll() { m_items.clear(); m_items.shrink_to_fit(); }
    void SetSize(int size) { m_items.resize(size < 0 ? 0 : static_cast<size_t>(size)); }
    void Append(const CArray& other) { m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end()); }

    // Index of the first element equal to value, or -1.
    int Find(const TYPE& value) const {
        const auto it = std::find(m_items.begin(), m_items.end(), value);
        return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
    }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    friend bool operator==(const CArray& a, const CArray& b) { return a.m_items == b.m_items; }

private:
    size_t checked(int index) const {
        if (index < 0) throw std::out_of_range("CArray index");
        return static_cast<size_t>(index);
    }

    std::vector<TYPE> m_items;
};

using CStringArray = CArray<CString, const CString&>;
