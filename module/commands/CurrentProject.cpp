// The current project of the project commands.
#include "module/commands/CurrentProject.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Locations.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace {

std::optional<std::filesystem::path> canonicalFolder(const CString& logicFolder) {
    const std::optional<std::string> native = QxFs::NativeTarget(logicFolder);
    if (!native) return std::nullopt;
    std::error_code error;
    std::filesystem::path path = std::filesystem::weakly_canonical(std::filesystem::absolute(*native, error), error);
    if (error) return std::nullopt;
    return path;
}

// Whether `folder` is `inner` or one of the folders above it.
bool isSameOrAbove(const std::filesystem::path& folder, const std::filesystem::path& inner) {
    auto f = folder.begin(), i = inner.begin();
    for (; f != folder.end() && i != inner.end(); ++f, ++i) {
        if (f->empty()) break;  // the trailing separator's empty name
        if (*f != *i) return false;
    }
    return f == folder.end() || f->empty();
}

} // namespace

bool CurrentProject::HasDocument() const {
    return !m_strPath.IsEmpty() && ProjectFolderRefusal(*this).IsEmpty() && FileExists(m_strDocument);
}

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

CString ProjectFolderRefusal(const CurrentProject& project) {
    if (project.m_strPath.IsEmpty()) return CString();
    if (project.m_strPath.Find(u'\\') < 0) return u"路径中没有文件夹";
    const std::optional<std::filesystem::path> folder = canonicalFolder(project.m_strFolder);
    if (!folder) return CString();  // a drive or UNC path: nothing there is ever found or written
    if (*folder == folder->root_path()) return u"其文件夹是文件系统的根目录";
    for (const CString& chosen : {GetLocalInstallDir(), GetMyProjectsDir()}) {
        if (chosen.IsEmpty()) continue;
        const std::optional<std::filesystem::path> limit = canonicalFolder(chosen);
        if (limit && isSameOrAbove(*folder, *limit))
            return QxFormat(u"其文件夹是%s或它的上级", QxFs::ToNativeText(chosen));
    }
    return CString();
}

bool RefuseUnusableProject(const CurrentProject& project) {
    const CString reason = ProjectFolderRefusal(project);
    if (reason.IsEmpty()) return false;
    acutPrintf(u"%s\n", QxFormat(u"当前项目%s不能使用（%s），请重新选择或创建项目。", QxFs::ToNativeText(project.m_strPath), reason));
    return true;
}
