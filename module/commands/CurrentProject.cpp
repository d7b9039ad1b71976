// The current project of the project commands.
#include "module/commands/CurrentProject.h"

#include "support/FileUtils.h"
#include "support/Locations.h"

bool CurrentProject::HasDocument() const { return !m_strPath.IsEmpty() && FileExists(m_strDocument); }

CurrentProject ResolveProjectFile(const CString& path) {
    CurrentProject project;
    project.m_strPath = path;
    const int lastSeparator = path.ReverseFind(u'\\');
    project.m_strFolder = path.Left(lastSeparator) + u"\\";  // Left(-1) is empty
    const CString withoutExtension = path.Left(path.GetLength() - 4);
    project.m_strName = withoutExtension.Mid(withoutExtension.ReverseFind(u'\\') + 1);
    project.m_strDocument = project.m_strFolder + u"Hexmoor.xml";
    return project;
}

CurrentProject ResolveCurrentProject() { return ResolveProjectFile(GetRecentProject()); }
