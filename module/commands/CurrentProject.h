// The current project of the project commands: the .itm that Data\recent.dat names, its folder, its name
// and the Hexmoor.xml that says the cloud knows it.
#pragma once

#include "support/CString.h"

struct CurrentProject {
    CString m_strPath;      // the project file; empty when no project is current
    CString m_strFolder;    // the path up to its last backslash, with one backslash behind it
    CString m_strName;      // the file's name less its 4-character extension
    CString m_strDocument;  // folder + "Hexmoor.xml"

    // Whether the cloud knows the project: its folder holds a Hexmoor.xml. Never for an empty path, whose
    // folder "\" would otherwise name the root of the file system.
    bool HasDocument() const;
};

// The project of the given file path, split as the commands split it. A path without a backslash gives the
// folder "\".
CurrentProject ResolveProjectFile(const CString& path);
// The project of Data\recent.dat.
CurrentProject ResolveCurrentProject();
