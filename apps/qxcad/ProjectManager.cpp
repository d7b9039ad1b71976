// XMMANAGE: the application's project manager, reduced to what a terminal can show: the current project's
// tree of sub-projects, devices and drawings.
#include "HostCommands.h"

#include "platform/host/HostOutput.h"
#include "project/ProjectFiles.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Locations.h"
#include "support/PathText.h"

namespace {

CString cloudMark(const CString& file) {
    return FileExists(GetParentPath(file) + u"\\Hexmoor.xml") ? CString(u"  [Hexmoor]") : CString();
}

void printDrawings(const CString& file, const CString& indent) {
    CStringArray drawings;
    ListDrawingsOfFile(file, drawings);
    for (const CString& drawing : drawings) acutPrintf(u"%s    %s\n", indent, GetFileNameOfPath(drawing));
}

void printProject(const CString& itm, const CString& indent) {
    acutPrintf(u"%s项目 %s%s\n", indent, RemoveFileExtension(GetFileNameOfPath(itm)), cloudMark(itm));
    CStringArray subProjects;
    ListSubProjects(itm, subProjects);
    for (const CString& sub : subProjects) printProject(sub, indent + u"  ");
    CStringArray devices;
    ListDevices(itm, devices);
    for (const CString& prj : devices) {
        acutPrintf(u"%s  设备 %s%s\n", indent, RemoveFileExtension(GetFileNameOfPath(prj)), cloudMark(prj));
        printDrawings(prj, indent + u"  ");
    }
}

} // namespace

void ShowProjectManager() {
    const CString current = GetRecentProject();
    if (current.IsEmpty() || !FileExists(current)) {
        acutPrintf(u"\nxmmanage: there is no current project.\n");
        return;
    }
    acutPrintf(u"\n%s\n", QxFs::ToNativeText(current));
    if (IsPrjFile(current)) {
        acutPrintf(u"设备 %s%s\n", RemoveFileExtension(GetFileNameOfPath(current)), cloudMark(current));
        printDrawings(current, CString());
        return;
    }
    printProject(current, CString());
}
