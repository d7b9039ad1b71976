// The parameter library of the Corvane application.
#include "platform/params/ParameterLibrary.h"

#include "platform/InstallPath.h"
#include "support/FileSystem.h"

#include <climits>
#include <optional>
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

CString loginRecord(const CString& enterprise, const CString& user, const CString& credential, const CString& server) {
    return enterprise + kSeparator + user + kSeparator + credential + kSeparator + server;
}

// What follows the record's four items in the stored login (separator included), when they are these four.
std::optional<CString> storedTail(const CString& record) {
    CString stored;
    if (QxGetCollectInfo_Varnholt_CV201301(2, stored) != 1 || !stored.StartsWith(record)) return std::nullopt;
    const CString tail = stored.Mid(record.GetLength());
    if (!tail.IsEmpty() && !tail.StartsWith(kSeparator)) return std::nullopt;
    return tail;
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
    // The login token stays while the login it was issued for stays the same.
    const CString record = loginRecord(enterprise, user, credential, server);
    QxFs::WritePrivate(file, (record + storedTail(record).value_or(CString())).ToUtf8());
}

CString StoredLoginToken(const CString& enterprise, const CString& user, const CString& credential, const CString& server) {
    const auto tail = storedTail(loginRecord(enterprise, user, credential, server));
    return tail && !tail->IsEmpty() ? tail->Mid(1) : CString();
}

void KeepLoginToken(const CString& enterprise, const CString& user, const CString& credential, const CString& server,
                    const CString& token) {
    const CString record = loginRecord(enterprise, user, credential, server);
    if (storedTail(record)) QxFs::WritePrivate(loginFile(), (record + kSeparator + token).ToUtf8());
}
