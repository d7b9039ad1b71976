// The install-path library.
#include "platform/InstallPath.h"

#include "support/FileSystem.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

// The library keeps the texts it hands out, as the Windows library does.
CString& overrideFolder() {
    static CString folder;
    return folder;
}

CString withTrailingBackslash(CString folder) {
    if (!folder.IsEmpty() && !folder.EndsWith(u"\\")) folder += u'\\';
    return folder;
}

std::string homeNative() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    if (const passwd* pw = ::getpwuid(::getuid()); pw && pw->pw_dir) return pw->pw_dir;
    return {};
}

CString installFolder() {
    if (!overrideFolder().IsEmpty()) return overrideFolder();
    if (const char* home = std::getenv("CORVANE_HOME"); home && *home)
        return withTrailingBackslash(QxFs::FromNative(home));
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data)
        return withTrailingBackslash(QxFs::FromNative(std::string(data) + "/corvane"));
    const std::string home = homeNative();
    if (home.empty()) return CString();
    return withTrailingBackslash(QxFs::FromNative(home + "/.local/share/corvane"));
}

const char16_t* keep(CString& slot, CString value) {
    slot = std::move(value);
    return slot.c_str();
}

} // namespace

const char16_t* GetCorvaneLocalInstallPath() {
    static CString text;
    return keep(text, installFolder());
}

const char16_t* GetInstallPath_CV() {
    static CString text;
    return keep(text, installFolder());
}

const char16_t* GetCorvaneCommonResInstallPath() {
    static CString text;
    if (const char* common = std::getenv("CORVANE_COMMON_HOME"); common && *common)
        return keep(text, withTrailingBackslash(QxFs::FromNative(common)));
    return keep(text, installFolder());
}

void SetCorvaneInstallDirOverride(const CString& logicFolder) { overrideFolder() = withTrailingBackslash(logicFolder); }

CString GetUserHomeFolder() {
    const std::string home = homeNative();
    return home.empty() ? CString(u"\\") : withTrailingBackslash(QxFs::FromNative(home));
}
