// Finding the sub-projects, devices and drawings of a project's folder tree.
#include "project/ProjectFiles.h"

#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/PathText.h"

bool IsFolderEmpty(const CString& pattern) {
    for (const QxFs::Entry& entry : QxFs::Find(pattern))
        if (entry.name != u"." && entry.name != u"..") return false;
    return true;
}

namespace {

// The files folder\<sub-folder>\<sub-folder>.<extension> of the folders directly in the project's folder.
bool listOwnFilesOfSubFolders(const CString& itmPath, const CString& extension, CStringArray& list) {
    list.RemoveAll();
    if (!IsFileInOwnFolder(itmPath) || !FileExists(itmPath) || !IsItmFile(itmPath)) return false;
    const CString projectFolder = GetParentPath(itmPath);
    for (const QxFs::Entry& entry : QxFs::List(projectFolder)) {
        if (!entry.isFolder) continue;
        const CString candidate = JoinPath(projectFolder, entry.name) + u"\\" + entry.name + extension;
        if (FileExists(candidate)) list.Add(candidate);
    }
    return true;
}

bool endsWithNoCase(const CString& text, const CString& suffix) {
    return text.GetLength() >= suffix.GetLength() && text.Right(suffix.GetLength()).EqualsNoCase(suffix);
}

} // namespace

bool ListSubProjects(const CString& itmPath, CStringArray& list) {
    return listOwnFilesOfSubFolders(itmPath, u".itm", list);
}

bool ListDevices(const CString& itmPath, CStringArray& list) {
    return listOwnFilesOfSubFolders(itmPath, u".prj", list);
}

void ListDrawingsOfFile(const CString& path, CStringArray& list) {
    list.RemoveAll();
    if (endsWithNoCase(path, u".prj")) {
        FindFilesInFolder(GetParentPath(path), u"dwg", list, false);
        return;
    }
    if (!endsWithNoCase(path, u".itm")) return;
    FindFilesInFolder(GetParentPath(path), u"dwg", list, false);
    CStringArray devices;
    ListDevices(path, devices);
    for (const CString& device : devices) FindFilesInFolder(GetParentPath(device), u"dwg", list, false);
}
