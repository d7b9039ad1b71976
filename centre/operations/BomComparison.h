// Comparing a device's rows with the centre's current revision, and the table that shows the outcome.
#pragma once

#include "centre/operations/CentreStore.h"

enum class RowChange { Added, Removed, CountChanged };

struct RowDifference {
    RowChange change = RowChange::Added;
    bool secondary = false;
    CString name;
    CString model;
    long long centreCount = 0;
    long long localCount = 0;
};

struct DeviceComparison {
    CString name;
    CString id;
    bool known = false;  // the centre knows the device by its ID
    int revision = 0;    // the centre's current revision, 0 when it has none
    std::vector<RowDifference> differences;
};

// A count as the system reads one: the leading digits, 0 when there are none (saturating, never overflowing).
QX_API long long RowCountValue(const CString& count);

// Rows are the same part when they are in the same system (primary or secondary) and have the same name
// and model, exactly; equal parts add their counts. Added and changed parts come in the local order,
// removed ones in the centre's.
QX_API std::vector<RowDifference> CompareRows(const std::vector<CentreRow>& centre, const std::vector<CentreRow>& local);

// A readable table per device, columns aligned for a terminal (wide characters take two columns).
QX_API CString FormatComparison(const std::vector<DeviceComparison>& devices);
