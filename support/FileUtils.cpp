// Small files and folder walks over logic paths.
#include "support/FileUtils.h"

#include "support/FileSystem.h"
#include "support/PathText.h"
#include "support/TextFile.h"

bool FileExists(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    if (slash >= 0) {
        CString name = path.Mid(slash + 1);
        const int dot = name.ReverseFind(u'.');
        if (dot >= 0) name = name.Left(dot);
        if (name.EqualsNoCase(u"com1") || name.EqualsNoCase(u"com2")) return false;
    }
    return !QxFs::Find(path).empty();
}

bool ReadFirstLine(const CString& path, CString& line) {
    if (!FileExists(path)) return false;
    CStringArray lines;
    if (!ReadTextLines(path, lines)) return false;
    line = lines.IsEmpty() ? CString() : lines[0];
    return true;
}

bool ReadFileLines(const CString& path, CStringArray& lines, bool keepEmpty) {
    lines.RemoveAll();
    if (!FileExists(path)) return false;
    CStringArray raw;
    if (!ReadTextLines(path, raw)) return false;
    for (CString line : raw) {
        line.Trim();
        if (!line.IsEmpty() || keepEmpty) lines.Add(line);
    }
    return true;
}

bool WriteFileLines(const CString& path, const CStringArray& lines) {
    CString text;
    for (const CString& line : lines) text += line + u"\n";
    return WriteLegacyText(path, text);
}

void FindFilesInFolder(const CString& folder, const CString& filter, CStringArray& paths, bool recursive) {
    for (const QxFs::Entry& entry : QxFs::Find(JoinPath(folder, u"*.*"))) {
        if (entry.isFolder) {
            if (entry.name == u"." || entry.name == u".." || !recursive) continue;
            FindFilesInFolder(JoinPath(folder, entry.name), filter, paths, recursive);
            continue;
        }
        if (filter.EqualsNoCase(u"*.*") || GetFileExtension(entry.name).EqualsNoCase(filter))
            paths.Add(JoinPath(folder, entry.name));
    }
}

bool IsFileInOwnFolder(const CString& path) {
    if (!FileExists(path) || (!IsItmFile(path) && !IsPrjFile(path))) return false;
    const CString parent = GetParentPath(path);
    const CString folderName = parent.Mid(parent.ReverseFind(u'\\') + 1);
    return RemoveFileExtension(GetFileNameOfPath(path)).EqualsNoCase(folderName);
}

bool FolderExists(const CString& folder) { return !QxFs::Find(JoinPath(folder, u"*.*")).empty(); }
