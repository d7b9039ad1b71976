// Node names that become folder and file names. A name from the cloud is used for a path only when it names
// exactly one entry inside its parent's folder; any other name is refused with a printed message, and the
// walk passes over that node and everything below it.
#pragma once

#include "support/CString.h"

// Not empty, not "." or "..", and free of control characters and of \ / : * ? " < > |.
QX_API bool HMIsSafeNodeName(const CString& name);

// Why the name cannot be the node's folder below `parentFolder` and the stem of its files (not a safe name;
// a name whose .itm or .prj would be longer than a file name may be; a path longer than the file system
// takes), or empty when it can.
QX_API CString HMNodeNameProblem(const CString& parentFolder, const CString& name);

// The name as a message may show it: control characters as \xHH, so that a terminal shows them as text.
QX_API CString HMPrintableNodeName(const CString& name);

// False for a name that can be used. Else prints why the node below `parentFolder` is passed over, and gives true.
QX_API bool HMRefuseUnsafeNodeName(const CString& parentFolder, const CString& name);
