// The usage files that the application collects below Part2lib\StructuralDrawing\ and the cloud receives
// after an interactive login.
#pragma once

#include "support/CString.h"

class CHexmoorInteFace;

// Sends every QxCollect_*.xml file; a file is deleted only when the cloud took it, and a file that cannot
// be read is neither sent nor deleted.
void SendUsageFiles(CHexmoorInteFace& client, const CString& item1);
// The key of a usage file name: its name less the extension, with every "QxCollect_" removed; empty when
// the name does not begin with "QxCollect_" in exactly that case.
CString UsageFileKey(const CString& fileName);
