// The current project of the project commands: the .itm that Data\recent.dat names, its folder, its name
// and the Hexmoor.xml that says the cloud knows it.
#pragma once

#include "support/CString.h"

struct CurrentProject {
    CString m_strPath;      // the project file; empty when no project is current
    CString m_strFolder;    // the path up to its last backslash, with one backslash behind it
    CString m_strName;      // the file's name less its 4-character extension
    CString m_strDocument;  // folder + "Hexmoor.xml"

    // Whether the cloud knows the project: its folder holds a Hexmoor.xml. Never for an empty path, nor for
    // one whose folder is refused (ProjectFolderRefusal).
    bool HasDocument() const;
};

// Why the project's folder cannot be a project folder, or empty when it can: a path without a backslash, a
// folder that is the root of the file system, or one that is the install folder, the projects folder or
// above either. Commands would otherwise read and rewrite files there and make device folders in it.
CString ProjectFolderRefusal(const CurrentProject& project);

// Prints the refusal and gives true when the project's folder is refused.
bool RefuseUnusableProject(const CurrentProject& project);

// The project of the given file path, split as the commands split it. A path without a backslash gives the
// folder "\".
CurrentProject ResolveProjectFile(const CString& path);
// The project of Data\recent.dat.
CurrentProject ResolveCurrentProject();
