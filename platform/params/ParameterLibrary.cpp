// The parameter library of the Corvane application.
#include "platform/params/ParameterLibrary.h"

#include "platform/InstallPath.h"
#include "support/FileSystem.h"

#include <climits>
#include <pwd.h>
#include <unistd.h>

namespace {

const char16_t* const kSeparator = u"\u00B7";

CString loginFile() {
    const CString install = GetCorvaneLocalInstallPath();
    return install.IsEmpty() ? CString() : install + u"LocalData\\QxLoginInfo.dat";
}

CString hostName() {
    char name[HOST_NAME_MAX + 1] = {};
    if (::gethostname(name, sizeof name - 1) != 0) return CString(u"localhost");
    return CString(name);
}

CString userName() {
    if (const passwd* pw = ::getpwuid(::getuid()); pw && pw->pw_name) return CString(pw->pw_name);
    return CString(u"user");
}

} // namespace

int QxGetCollectInfo_Varnholt_CV201301(int item, CString& value) {
    value.Empty();
    switch (item) {
    case 1:
        value = hostName() + u"/" + userName();
        return 1;
    case 3:
        value = CString(u"QxHMInterFace ") + CString(QX_VERSION) + u" Linux " + hostName();
        return 1;
    case 2: {
        std::string bytes;
        const CString file = loginFile();
        if (file.IsEmpty() || !QxFs::ReadBytes(file, bytes) || bytes.empty()) return 0;
        value = CString::FromUtf8(bytes);
        return 1;
    }
    default:
        return 0;
    }
}

void QxLSetLoginInfo_Varnholt_CV201301(CString enterprise, CString user, CString credential, CString server) {
    const CString file = loginFile();
    if (file.IsEmpty() || !QxFs::MakeFolder(GetCorvaneLocalInstallPath() + CString(u"LocalData"))) return;
    const CString record = enterprise + kSeparator + user + kSeparator + credential + kSeparator + server;
    QxFs::WritePrivate(file, record.ToUtf8());
}
