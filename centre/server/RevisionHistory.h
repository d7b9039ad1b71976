// A device's revisions and the comparison of two of them, read for the web view and its API. Only devices
// of the reader's own enterprise are found.
#pragma once

#include "centre/operations/BomCentreOperations.h"

#include <optional>

struct DeviceHistory {
    CentreProject project;
    CentreNode device;
    std::vector<CentreRevision> revisions;  // oldest first
};

// Null when the project is not the enterprise's or the node is not a device of it.
QX_API std::optional<DeviceHistory> ReadDeviceHistory(ICentreStore& store, const CentreUser& who, long long projectId,
                                                      long long deviceId);
// The rows of one revision of the device (by its number); null when it has no such revision.
QX_API std::optional<std::vector<CentreRow>> ReadRevisionRows(ICentreStore& store, const DeviceHistory& history, int number);
