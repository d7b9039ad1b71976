// From folders on disk to a project tree: through the Hexmoor.xml documents of a project that the cloud
// knows, or through the .itm and .prj files of a local one. A node's folder is the parent folder +
// m_strName + "\".
#pragma once

#include "project/ProjectTree.h"

// Links each child of the root to it, lists the devices among them in the root's m_arrCabinets, and loads
// each from its document below `folder`. With `extract` a device's rows are read afresh from its drawings
// and merged with the cabinet groups of the last scan; without it they come from its document.
QX_API void LinkChildrenAndLoad(HMProjectTree_INFO* tree, const CString& folder, bool extract);

// Reads the node from its folder's Hexmoor.xml and walks down its children. A node without a document
// stays as its parent's document gave it, without a message; a node whose name is no plain folder name is
// passed over with its sub-tree and a printed message.
QX_API void LoadNodeFromDocument(const CString& parentFolder, HMProjectTree_INFO* node, bool extract);

// Adds to the node the sub-projects (type "100") and then the devices (type "0") found below its .itm at
// `itmPath`, in listing order; devices take their cabinet notes from their .prj and their secondary rows
// from their drawings. No Hexmoor.xml is read: every ID stays empty.
QX_API void BuildTreeFromFolders(const CString& itmPath, HMProjectTree_INFO* node);
