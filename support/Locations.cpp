// Where things are: the install folder, the projects folder and the current project.
#include "support/Locations.h"

#include "platform/InstallPath.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/PathText.h"
#include "support/TextFile.h"

CString GetLocalInstallDir() {
    CString folder = GetCorvaneLocalInstallPath();
    if (folder.IsEmpty()) return CString();
    if (!FolderExists(folder)) return CString();
    if (!folder.EndsWith(u"\\")) folder += u'\\';
    return folder;
}

CString GetMyProjectsDir() {
    const CString install = GetLocalInstallDir();
    const CString fallback = install + u"My Projects\\";
    auto defaultFolder = [&]() { return FolderExists(fallback) ? fallback : GetUserHomeFolder(); };

    CStringArray lines;
    if (!ReadTextLines(install + u"Data\\MyItms.Dat", lines)) return defaultFolder();
    CString line = lines.IsEmpty() ? CString() : lines[0].Left(198);
    if (line.IsEmpty()) return defaultFolder();
    if (!line.EndsWith(u"\\")) line += u'\\';
    return FolderExists(line) ? line : defaultFolder();
}

CString GetRecentProject() {
    CString line;
    if (!ReadFirstLine(JoinPath(GetInstallPath_CV(), u"Data\\recent.dat"), line)) return CString();
    return line;
}

void SetRecentProject(const CString& path) {
    const CString file = GetLocalInstallDir() + u"Data\\recent.dat";
    if (!QxFs::IsFolder(GetParentPath(file))) return;
    WriteLegacyText(file, path);
}
