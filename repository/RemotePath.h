// Path text of remote paths: relative to the site's root, backslash-separated, a folder may end in "\".
// Unlike local paths they may have no folder part at all ("Server.xml").
#pragma once

#include "support/CString.h"

// The part before the last backslash; empty for a name at the root.
QX_API CString RemoteParent(const CString& path);
// The part after the last backslash; the whole path when it has none.
QX_API CString RemoteName(const CString& path);
// Joins with exactly one backslash; an empty folder gives the name alone, so that the path stays relative.
QX_API CString JoinRemote(const CString& folder, const CString& name);
