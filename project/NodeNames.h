// Node names that become folder and file names. A name from the cloud is used for a path only when it names
// exactly one entry inside its parent's folder; any other name is refused with a printed message, and the
// walk passes over that node and everything below it.
#pragma once

#include "support/CString.h"

// Not empty, not "." or "..", and free of control characters and of \ / : * ? " < > |.
QX_API bool HMIsSafeNodeName(const CString& name);

// The name as a message may show it: control characters as \xHH, so that a terminal shows them as text.
QX_API CString HMPrintableNodeName(const CString& name);

// False for a safe name. Else prints why the node below `parentFolder` is passed over, and gives true.
QX_API bool HMRefuseUnsafeNodeName(const CString& parentFolder, const CString& name);
