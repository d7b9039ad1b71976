// What the centre asks of a tree before it keeps it: every name makes a folder on the clients, so names
// must be plain folder names and siblings must differ ignoring case.
#pragma once

#include "project/ProjectTree.h"

#include <vector>

struct TreeWalkStep {
    HMProjectTree_INFO* node;
    const HMProjectTree_INFO* parent;
    int position;  // the node's index in its parent's m_arrChildren
};

// The nodes below the root in walk order (a parent before its children, siblings in array order), each
// once; null entries and a node met again (a cycle) are passed over. No recursion, so any depth is safe.
QX_API std::vector<TreeWalkStep> NodesBelow(const HMProjectTree_INFO& root);

// Why the name cannot name a folder, or empty when it can.
QX_API CString FolderNameProblem(const CString& name);

// Throws CCentreError for a tree the centre cannot take as a new project: a root that is not a project's
// root, a bad name, siblings whose names are equal ignoring case, a node below the root without a type,
// a device with children, a node that appears twice.
QX_API void CheckNewProjectTree(const HMProjectTree_INFO& root);
