#include "centre/server/RevisionHistory.h"

std::optional<DeviceHistory> ReadDeviceHistory(ICentreStore& store, const CentreUser& who, long long projectId, long long deviceId) {
    CentreTransaction transaction(store, CentreTransaction::Mode::Read);
    const auto project = store.project(projectId);
    if (!project || project->enterprise != who.enterprise) return std::nullopt;
    const auto device = store.node(deviceId);
    if (!device || device->projectId != projectId || !HMIsDeviceType(device->type)) return std::nullopt;
    DeviceHistory history{*project, *device, store.revisions(deviceId)};
    transaction.commit();
    return history;
}

std::optional<std::vector<CentreRow>> ReadRevisionRows(ICentreStore& store, const DeviceHistory& history, int number) {
    for (const CentreRevision& revision : history.revisions)
        if (revision.number == number) return store.rows(revision.id);
    return std::nullopt;
}
