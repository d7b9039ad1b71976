// Path text of remote paths.
#include "repository/RemotePath.h"

CString RemoteParent(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    return slash < 0 ? CString() : path.Left(slash);
}

CString RemoteName(const CString& path) { return path.Mid(path.ReverseFind(u'\\') + 1); }

CString JoinRemote(const CString& folder, const CString& name) {
    if (folder.IsEmpty()) return name;
    CString joined = folder;
    if (!joined.EndsWith(u"\\")) joined += u'\\';
    CString rest = name;
    rest.TrimLeft(u'\\');
    return joined + rest;
}
