// The dry run of a project's submit, for qxinspect project: what HMBomSubmit would send for a project the
// cloud knows (it has a Hexmoor.xml), or what HMItmSubmit would send for a local one once its cabinet dialog
// ended with OK and no change. Nothing is sent and nothing is written.
#pragma once

#include "project/ProjectTree.h"

#include <memory>

struct ProjectDryRun {
    CString m_strCommand;  // "HMBomSubmit" or "HMItmSubmit"
    CString m_strProjectFolder;
    std::unique_ptr<HMProjectTree_INFO> m_pTree;
    CStringArray m_arrMessages;  // the boxes shown on the way, the cabinet checks' among them
    bool m_bCheckFailed = false;
    bool m_bWouldSend = false;
    CString m_strWhyNot;  // empty when the tree would be sent
};

// `itmPath` is an existing project file (.itm) as a logic path.
ProjectDryRun RunProjectDryRun(const CString& itmPath);

// A device's place in the tree: the names below the root down to it, joined by "/".
CString DevicePathInTree(const HMProjectTree_INFO& device);
