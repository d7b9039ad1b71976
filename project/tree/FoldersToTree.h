// From folders on disk to a project tree: through the Hexmoor.xml documents of a project that the cloud
// knows, or through the .itm and .prj files of a local one. A node's folder is the parent folder +
// m_strName + "\".
#pragma once

#include "project/ProjectTree.h"

// Links each child of the root to it, loads each from its document below `folder`, and lists the devices
// among them in the root's m_arrCabinets. With `extract` a device's rows are read afresh from its drawings
// and merged with the cabinet groups of the last scan; without it they come from its document.
// A node whose own document was not read (missing, unreadable, or its name no plain folder name) stays as
// its parent's document gave it and, when a device, is left out of m_arrCabinets, so that no submit sends
// it and no write-back rewrites its document; one box names every such node, and the others go on.
QX_API void LinkChildrenAndLoad(HMProjectTree_INFO* tree, const CString& folder, bool extract);

// Reads the node from its folder's Hexmoor.xml and walks down its children, as above; a box names the
// nodes of this sub-tree whose document was not read.
QX_API void LoadNodeFromDocument(const CString& parentFolder, HMProjectTree_INFO* node, bool extract);

// Adds to the node the sub-projects (type "100") and then the devices (type "0") found below its .itm at
// `itmPath`, in listing order; devices take their cabinet notes from their .prj and their secondary rows
// from their drawings. No Hexmoor.xml is read: every ID stays empty.
QX_API void BuildTreeFromFolders(const CString& itmPath, HMProjectTree_INFO* node);

// A device as the walk over folders makes it from its .prj at `prjPath`: name, type "0", folder, the four
// cabinet notes and the secondary rows of its drawings. Parent and root are the caller's.
QX_API void LoadDeviceFromPrj(const CString& prjPath, HMProjectTree_INFO& device);
