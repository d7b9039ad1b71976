// The compact index of a document's elements: records of offsets and links, no node tree.
#pragma once

#include "support/Export.h"

#include <vector>

enum : int {
    QX_ELEM_EMPTY = 0x1,     // written as <name/>
    QX_ELEM_NONENDED = 0x2,  // closed by an outer end tag or by the end of the text, not by its own
};

// One element. Links are record numbers; 0 is no link, and record 0 stands for the document itself.
struct QxElemPos {
    int nStart = 0;        // offset of "<"
    int nLength = 0;       // up to the end of the end tag, or to where the element was closed
    int nStartTagLen = 0;
    int nEndTagLen = 0;
    int iElemParent = 0;
    int iElemChild = 0;    // first child
    int iElemNext = 0;
    int iElemPrev = 0;
    int nLevel = 0;        // 0 for top-level elements
    int nFlags = 0;
};

// Records live in segments of 65,536, so that a large document never moves what is already indexed.
class QX_API CElementIndex {
public:
    static constexpr int kSegmentSize = 65536;

    // Empties the index but for the document's record; room is made for `expected` records at first.
    void Reset(int expected);
    // A new record, zeroed; its number.
    int Add();
    QxElemPos& operator[](int record);
    const QxElemPos& operator[](int record) const;
    int GetSize() const { return m_nCount; }

private:
    std::vector<std::vector<QxElemPos>> m_segments;
    int m_nCount = 0;
};
