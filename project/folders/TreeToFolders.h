// From a project tree to folders on disk: new folders for a cloud project, keeping an existing folder tree
// up to date, and saving the documents of the nodes that a submit changed. A node's folder is the parent
// folder + m_strName + "\". Nothing here ever deletes a file or a folder: a node that has gone from the
// cloud keeps its folder. A node whose name is not a plain folder name (HMIsSafeNodeName) is passed over
// with its sub-tree and a printed message, as a folder that is already in use is; so is a node more than 64
// levels below the node a walk starts from.
#pragma once

#include "platform/cloud/HexmoorClient.h"
#include "project/ProjectTree.h"

// Makes the device's folder with its .prj (description notes, then the four cabinet notes), a copy of the
// template drawing Support\TEMPLATE\图纸.DWG and its Hexmoor.xml. False, with nothing made or changed,
// when the folder already holds anything, cannot be made, or the name is refused.
QX_API bool CreateDeviceFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node);

// Makes the project's folder with its .itm and Hexmoor.xml, then each child (a failed child does not stop
// its siblings). False on the same grounds as a device.
QX_API bool CreateProjectFromNode(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node);

// A node whose folder holds anything is there already: its Hexmoor.xml is saved again and its children are
// brought up to date. Any other node is created. Always true.
QX_API bool UpdateLocalFromServer(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node);

// Saves the documents of the nodes marked m_bChanged, walking the root and the sub-projects. The root (empty
// m_strType) is saved in `parentFolder` itself, not in a folder of its name. The documents are made durable
// together and renamed into place at the end of the walk (QxFs::DurableWriteBatch).
QX_API void WriteBackChangedNodes(CHexmoorInteFace& client, const CString& parentFolder, const HMProjectTree_INFO* node);
