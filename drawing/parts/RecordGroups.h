// The text records of a label cell: lines "key:value" in groups, each group opened by a "标号:" line.
#pragma once

#include "support/CArray.h"

#include <vector>

// The label cell's device attributes, in the order their keys are tried.
enum LabelRecordKey : int {
    kLabel, kSeqNo, kBoardNo, kBoardName, kBoardSide, kRowSplit, kWirePathNo, kMergedLabels, kWireStampBlock,
    kWireStampAngle, kLayoutScale, kElementDesc, kElementOrderNo, kElementLabelDistance, kElementClass,
    kCabinetDrawingBlock, kBreakerDrawingBlock, kLabelRecordKeyCount
};
QX_API const std::vector<CString>& LabelRecordKeys();

// The components of a label cell.
enum ComponentRecordKey : int { kComponentLabel, kComponentName, kComponentCode, kComponentType, kComponentCount,
                                kComponentRecordKeyCount };
QX_API const std::vector<CString>& ComponentRecordKeys();

// Each line's first key that its left end equals gives the target, and the text behind the key the value;
// other lines are passed over. A line of the first key at any index but 0 closes the group in progress
// before it sets the value; the last line closes the group after it is read. Values are not reset between
// groups, so a group inherits what it does not state.
//
// A group holds, per key, the number of the line that last set it, not a copy of the value: a long value
// that many groups inherit is kept once, in its line.
class QX_API RecordGroups {
public:
    RecordGroups(CStringArray lines, const std::vector<CString>& keys);

    size_t size() const { return m_keys.empty() ? 0 : m_setters.size() / m_keys.size() - 1; }
    bool empty() const { return size() == 0; }
    // The value of `key` when group `group` closed; empty when no line had set it.
    CString value(size_t group, int key) const;
    // The value after the last line: what holds for the whole list.
    CString lastValue(int key) const { return value(size(), key); }

private:
    CStringArray m_lines;
    const std::vector<CString>& m_keys;
    // One row of line numbers (-1 for none) per group, then one for the state after the last line.
    std::vector<int> m_setters;
};
