// Saving one node of a project tree as the Hexmoor.xml of a folder.
#pragma once

#include "platform/cloud/HexmoorClient.h"
#include "project/ProjectTree.h"

// Writes the node's document and hands its text to the client's saveXml for folder + "Hexmoor.xml". The
// result of saveXml is not looked at. A document that cannot be composed is reported on the command line
// and not saved, so that the walk that asked goes on with the other nodes.
QX_API void HMSaveNodeDocument(CHexmoorInteFace& client, const CString& folder, const HMProjectTree_INFO* node);
