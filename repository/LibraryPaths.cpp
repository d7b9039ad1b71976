// Which paths of the site are library files.
#include "repository/LibraryPaths.h"

#include "repository/RemotePath.h"
#include "repository/VersionFile.h"

namespace {

bool isPlainElement(const CString& name) {
    if (name.IsEmpty() || name == u"." || name == u"..") return false;
    for (const char16_t ch : name.str())
        if (ch < 0x20 || ch == 0x7f || ch == u':' || ch == u'/') return false;
    return true;
}

// The first element, ignoring case, is one of the client's own folders.
bool isClientOwnPath(const CString& path) {
    if (path.EqualsNoCase(kMainLibraryPath)) return false;
    const int slash = path.Find(u'\\');
    const CString first = slash < 0 ? path : path.Left(slash);
    if (slash < 0) return first.EqualsNoCase(u"Client.xml") || first.EqualsNoCase(u"Client_PartLib.xml");
    for (const char16_t* folder : {u"LocalData", u"TempFTP", u"Temp", u"Data"})
        if (first.EqualsNoCase(folder)) return true;
    return false;
}

} // namespace

bool IsStagingName(const CString& name) { return name.StartsWith(u"#") && name.Right(4).EqualsNoCase(u".txt"); }

bool IsProtocolFile(const CString& path) {
    const CString name = RemoteName(path);
    if (name.Right(4).EqualsNoCase(u".bak") || IsStagingName(name)) return true;
    if (path != name) return false;
    for (const char16_t* own : {u"Server.xml", u"Server.backup", u"Server_Tmp.xml", u"OS.log"})
        if (name.EqualsNoCase(own)) return true;
    return false;
}

bool IsLibraryPath(const CString& path) {
    CString body = path;
    if (body.EndsWith(u"\\")) body = body.Left(body.GetLength() - 1);
    if (body.IsEmpty()) return false;
    for (int start = 0;;) {
        const int slash = body.Find(u'\\', start);
        if (!isPlainElement(body.Mid(start, slash < 0 ? body.GetLength() - start : slash - start))) return false;
        if (slash < 0) break;
        start = slash + 1;
    }
    return !isClientOwnPath(body) && !IsProtocolFile(body);
}
