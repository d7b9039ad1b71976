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

struct QX_API RecordGroups {
    // The values of every key, by key index, at each close of a group.
    std::vector<CStringArray> groups;
    // The values after the last line: what holds for the whole list.
    CStringArray last;
};

// Each line's first key that its left end equals gives the target, and the text behind the key the value;
// other lines are passed over. A line of the first key at any index but 0 closes the group in progress
// before it sets the value; the last line closes the group after it is read. Values are not reset between
// groups, so a group inherits what it does not state.
QX_API RecordGroups QxSplitRecordGroups(const CStringArray& lines, const std::vector<CString>& keys);
