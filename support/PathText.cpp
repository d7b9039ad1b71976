// Path text: backslash-separated logic paths, worked on as text only.
#include "support/PathText.h"

namespace {

CString lastItemOf(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    return slash < 0 ? path : path.Mid(slash + 1);
}

} // namespace

bool HasFileExtension(const CString& path) {
    const CString item = lastItemOf(path);
    const int dot = item.ReverseFind(u'.');
    return dot >= 0 && dot + 1 < item.GetLength();
}

CString JoinPath(const CString& first, const CString& second) {
    const bool firstEnds = !first.IsEmpty() && first.EndsWith(u"\\");
    const bool secondBegins = !second.IsEmpty() && second.StartsWith(u"\\");
    if (firstEnds && secondBegins) return first.Left(first.GetLength() - 1) + second;
    if (!firstEnds && !secondBegins) return first + u"\\" + second;
    return first + second;
}

CString GetLastPathItem(const CString& path) {
    CString trimmed = path;
    if (trimmed.EndsWith(u"\\")) trimmed = trimmed.Left(trimmed.GetLength() - 1);
    const int slash = trimmed.ReverseFind(u'\\');
    return slash < 0 ? CString() : trimmed.Mid(slash + 1);
}

CString GetParentPath(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    return slash < 0 ? CString() : path.Left(slash);
}

CString GetFileNameOfPath(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    return slash < 0 ? CString() : path.Mid(slash + 1);
}

CString GetFileExtension(const CString& path) {
    if (!HasFileExtension(path)) return CString();
    const CString extension = path.Mid(path.ReverseFind(u'.') + 1);
    return extension.Find(u'\\') >= 0 ? CString() : extension;
}

CString RemoveFileExtension(const CString& path) {
    if (!HasFileExtension(path)) return path;
    return path.Left(path.ReverseFind(u'.'));
}

bool IsItmFile(const CString& path) { return GetFileExtension(path).EqualsNoCase(u"itm"); }

bool IsPrjFile(const CString& path) { return GetFileExtension(path).EqualsNoCase(u"prj"); }

bool IsSafeFolderName(const CString& name) {
    if (name.IsEmpty() || name == u"." || name == u"..") return false;
    for (char16_t ch : name.str())
        if (ch < 0x20 || ch == u'\\' || ch == u'/' || ch == u':' || ch == 0x7F) return false;
    return true;
}
