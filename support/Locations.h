// Where things are: the install folder, the projects folder and the current project.
#pragma once

#include "support/CString.h"

// The local install folder with one trailing backslash, or empty when it is not named or does not exist.
QX_API CString GetLocalInstallDir();
// The folder named by Data\MyItms.Dat, else "My Projects\" of the install folder, else the home folder.
QX_API CString GetMyProjectsDir();
// The path in Data\recent.dat: the current project's .itm or device's .prj; empty when there is none.
QX_API CString GetRecentProject();
QX_API void SetRecentProject(const CString& path);
