// The segmented element index.
#include "exchange/text/ElementIndex.h"

#include <algorithm>

void CElementIndex::Reset(int expected) {
    m_segments.clear();
    m_segments.emplace_back();
    m_segments.back().reserve(static_cast<size_t>(std::clamp(expected, 1, kSegmentSize)));
    m_segments.back().emplace_back();
    m_nCount = 1;
}

int CElementIndex::Add() {
    if (m_segments.empty()) Reset(1);
    if (m_segments.back().size() == static_cast<size_t>(kSegmentSize)) {
        m_segments.emplace_back();
        m_segments.back().reserve(kSegmentSize);
    }
    m_segments.back().emplace_back();
    return m_nCount++;
}

QxElemPos& CElementIndex::operator[](int record) {
    return m_segments[static_cast<size_t>(record / kSegmentSize)][static_cast<size_t>(record % kSegmentSize)];
}

const QxElemPos& CElementIndex::operator[](int record) const {
    return m_segments[static_cast<size_t>(record / kSegmentSize)][static_cast<size_t>(record % kSegmentSize)];
}
