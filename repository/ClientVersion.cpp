// Whether this client is behind the site's journal, and bringing its version files to the journal's line.
#include "repository/FtpTransport.h"
#include "repository/MyFtpConnection.h"
#include "repository/VersionFile.h"

#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <ctime>

namespace {

const char16_t kJournal[] = u"Server.xml";

CString firstLineOf(const CString& path) {
    CString line;
    ReadFirstLine(path, line);
    return line.Trim();
}

} // namespace

// A journal that cannot be downloaded is taken for missing only when a listing of the root says so: a
// journal that is there but could not be read (a dropped connection) must never be replaced by a new one.
bool CMyFtpConnection::journalMissingOnSite() {
    CStringArray folders;
    CStringArray files;
    if (!ListRemoteFolder(CString(), folders, files)) return false;
    for (const CString& file : files)
        if (file.EqualsNoCase(kJournal)) return false;
    return true;
}

// The first client of an empty site gives it its journal: its own version line, or `fallbackLine` when it
// has none. This happens under the journal lock, and only when the journal is still missing then, so that
// a journal another client has just made is never replaced.
void CMyFtpConnection::giveSiteItsJournal(const CString& fallbackLine) {
    if (!journalMissingOnSite()) return;
    LockVersionFile();
    if (journalMissingOnSite()) {
        const CString clientXml = clientFile(u"Client.xml");
        if (!FileExists(clientXml)) WriteLegacyText(clientXml, fallbackLine);
        UploadFile(clientXml, kJournal);
    }
    RemoveRemoteFileQuietly(u"Server.xml.bak");
}

int CMyFtpConnection::CheckClientVersion() {
    const CString copy = workFile(kJournal);
    QxFs::DeleteFile(copy);
    if (!m_pConnection) return 0;
    const CString clientXml = clientFile(u"Client.xml");
    if (!DownloadFile(kJournal, copy)) {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        char text[64];
        std::strftime(text, sizeof text, "%Y,%m,%d, %X", &local);
        giveSiteItsJournal(CString(u"版本日期：") + CString(text));
        return 0;
    }
    const CString serverLine = firstLineOf(copy);
    if (serverLine.IsEmpty()) {
        QxFs::DeleteFile(copy);
        return 0;
    }
    const CString clientLine = firstLineOf(clientXml);
    const CString partLibLine = firstLineOf(clientFile(u"Client_PartLib.xml"));
    if (!clientLine.IsEmpty()) {
        if (clientLine.EqualsNoCase(serverLine)) {
            QxFs::DeleteFile(copy);
            return 0;
        }
        if (FindMainLibChange(copy, partLibLine)) QxFs::DeleteFile(copy);
        return 1;
    }
    return FindMainLibChange(copy, partLibLine) ? 1 : 0;
}

bool CMyFtpConnection::CheckServerVersion(bool& mainLibChanged) {
    const CString copy = workFile(kJournal);
    QxFs::DeleteFile(copy);
    if (!m_pConnection && !ConnectServer()) return false;
    const CString clientXml = clientFile(u"Client.xml");
    if (!DownloadFile(kJournal, copy)) {
        giveSiteItsJournal(u"版本日期：2007,07,07,07,07,07");
        return false;
    }
    const CString serverLine = firstLineOf(copy);
    if (serverLine.IsEmpty() || firstLineOf(clientXml).EqualsNoCase(serverLine)) {
        QxFs::DeleteFile(copy);
        return false;
    }
    mainLibChanged = FindMainLibChange(copy, firstLineOf(clientFile(u"Client_PartLib.xml")));
    QxFs::DeleteFile(copy);
    return true;
}

bool CMyFtpConnection::SyncClientVersion() {
    const CString copy = workFile(kJournal);
    QxFs::DeleteFile(copy);
    if (!DownloadFile(kJournal, copy)) return false;
    const CString serverLine = firstLineOf(copy);
    if (serverLine.IsEmpty()) {
        QxFs::DeleteFile(copy);
        return false;
    }
    WriteLegacyText(clientFile(u"Client.xml"), serverLine);
    return WriteLegacyText(clientFile(u"Client_PartLib.xml"), serverLine);
}

bool CMyFtpConnection::FindMainLibChange(const CString& journal, CString version) {
    version = StampOfVersionLine(version);
    CStringArray lines;
    ReadFileLines(journal, lines, false);
    for (int i = 1; i < lines.GetSize(); ++i) {
        const CString& line = lines[i];
        const int first = line.Find(u'|');
        const CString path = first < 0 ? line : line.Left(first);
        CString stamp;
        if (first >= 0) {
            const int second = line.Find(u'|', first + 1);
            stamp = second < 0 ? line.Mid(first + 1) : line.Mid(first + 1, second - first - 1);
        }
        // The journal runs newest first: from here on every line is older than the client.
        if (!version.IsEmpty() && version.CompareNoCase(stamp) >= 0) return false;
        if (path.EqualsNoCase(kMainLibraryPath)) return true;
    }
    return false;
}
