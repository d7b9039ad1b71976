// The journal update that follows every change on the site, with the backup that guards the journal's
// length and the operation log.
#include "repository/FtpTransport.h"
#include "repository/HostId.h"
#include "repository/MyFtpConnection.h"
#include "repository/RepositoryMessages.h"
#include "repository/VersionFile.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <ctime>

namespace {

const char16_t kJournal[] = u"Server.xml";
const char16_t kJournalLock[] = u"Server.xml.bak";
const char16_t kBackup[] = u"Server.backup";
const char16_t kLog[] = u"OS.log";

CStringArray nonEmptyLines(const CString& path) {
    CStringArray lines;
    ReadFileLines(path, lines, false);
    return lines;
}

CString firstLineOf(const CString& path) {
    CString line;
    ReadFirstLine(path, line);
    return line.Trim();
}


// Whether `journal` holds every path of `backup`: the journal only grows, so a path it lacks is a lost line.
// Lines of the backup that are no journal lines (a backup overwritten with other bytes) count for nothing.
bool holdsEveryPathOf(const CString& journal, const CString& backup) {
    COperateVersionFile journalFile(journal);
    COperateVersionFile backupFile(backup);
    journalFile.Load();
    backupFile.Load();
    for (const STRUCT_FILE_INFO& entry : backupFile.GetEntries())
        if (IsWellFormedEntry(entry) && !journalFile.HasPath(entry.m_strPath)) return false;
    return true;
}

} // namespace

// The backup is renewed when the journal lost nothing of it, judged by content rather than by counting
// lines, so that a garbage backup is replaced and a journal that lost a line is never taken for whole.
void CMyFtpConnection::BackupVersionFile(const CString& journal) {
    const CString backupCopy = workFile(kBackup);
    QxFs::DeleteFile(backupCopy);
    DownloadFile(kBackup, backupCopy);
    const bool whole = holdsEveryPathOf(journal, backupCopy);
    QxFs::DeleteFile(backupCopy);
    if (!whole || !writeJournalLike(journal, kBackup)) WriteOperationLog(u"备份Server.xml文件时出错！");
}

bool CMyFtpConnection::RepairVersionFile(const CString& journal, const CStringArray& paths, const CStringArray& operations) {
    const CString backupCopy = workFile(kBackup);
    QxFs::DeleteFile(backupCopy);
    DownloadFile(kBackup, backupCopy);
    const CStringArray journalLines = nonEmptyLines(journal);
    const CStringArray backupLines = nonEmptyLines(backupCopy);

    COperateVersionFile repaired(journal);
    repaired.Load();
    COperateVersionFile backup(backupCopy);
    backup.Load();
    QxFs::DeleteFile(backupCopy);
    if (repaired.RestoreMissingEntries(backup) == 0) {
        const int journalCount = journalLines.GetSize();
        const int backupCount = backupLines.GetSize();
        if (journalCount == 0) WriteOperationLog(u"更新后Server.xml文件数据为空！");
        if (journalCount == 1) WriteOperationLog(QxFormat(u"%s,更新Server.xml文件仅有一条数据！", journalLines[0]));
        if (backupCount == 0) WriteOperationLog(u"Server.backup文件不存在或数据为空！");
        if (backupCount == 1) WriteOperationLog(QxFormat(u"%s,Server.backup文件仅有一条数据！", backupLines[0]));
        return true;
    }

    // Lines were lost: they are put back, and this client's change is applied again on top, so that its
    // stamp is above every restored one.
    repaired.RemoveEntries(paths);
    if (!repaired.AddEntries(paths, operations)) {
        const CString text = journalLines.IsEmpty()
                                 ? CString(u"利用备份数据更新Server.xml仍然出错！")
                                 : QxFormat(u"%s,利用备份数据更新Server.xml仍然出错！", journalLines[journalLines.GetUpperBound()]);
        WriteOperationLog(text);
        ShowRepositoryBox(text, MB_ICONERROR);
        QxFs::DeleteFile(journal);
        return false;
    }
    return true;
}

bool CMyFtpConnection::WriteOperationLog(const CString& text) {
    const CString copy = workFile(kLog);
    QxFs::DeleteFile(copy);
    DownloadFile(kLog, copy);
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    CStringArray lines;
    ReadTextLines(copy, lines);
    lines.Add(QxFormat(u"[TIME:]%d-%d-%d %d:%d:%d  [HOST:]%s  [OPRT:]%s", local.tm_year + 1900, local.tm_mon + 1,
                       local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, GetHostId(), text));
    QxFs::MakeFolders(GetTempFolder());
    const bool written = WriteFileLines(copy, lines) && uploadLockLike(copy, kLog);
    QxFs::DeleteFile(copy);
    return written;
}

// The journal and its backup are always staged, whatever "Ftp.bg" says, and measured before the rename:
// an upload broken off, or a client killed during it, leaves the old journal whole.
bool CMyFtpConnection::writeJournalLike(const CString& local, const CString& target) { return replaceStaged(local, target); }

bool CMyFtpConnection::finishJournalUpdate(const CStringArray& paths, const CStringArray& operations) {
    LockVersionFile();
    const CString copy = workFile(kJournal);
    QxFs::DeleteFile(copy);
    // Whether this client is in step is decided here, under the lock, from the journal just read: a look
    // taken before the lock may miss a change another client made in between.
    const CString clientLine = firstLineOf(clientFile(u"Client.xml"));
    bool wasInStep;
    if (DownloadFile(kJournal, copy)) {
        // The round trip through "Server_Tmp.xml" finds a journal that another program holds open.
        if (m_pConnection->Rename(kJournal, u"Server_Tmp.xml") && !m_pConnection->Rename(u"Server_Tmp.xml", kJournal)) {
            Disconnect();
            if (ConnectServer()) m_pConnection->Rename(u"Server_Tmp.xml", kJournal);
        }
        wasInStep = !clientLine.IsEmpty() && clientLine.EqualsNoCase(firstLineOf(copy));
        BackupVersionFile(copy);
    } else if (!journalMissingOnSite()) {
        // The journal is there but cannot be read: writing a new one would shorten it.
        RemoveRemoteFileQuietly(kJournalLock);
        return false;
    } else {
        wasInStep = clientLine.IsEmpty();
    }

    COperateVersionFile journal(copy);
    journal.Clear();
    journal.Load();
    journal.RemoveEntries(paths);
    const bool written = journal.AddEntries(paths, operations) && RepairVersionFile(copy, paths, operations) &&
                         writeJournalLike(copy, kJournal);
    // The backup follows the journal at once, so that it never lags an update behind.
    if (written) writeJournalLike(copy, kBackup);
    // Whatever happened, the journal on the site is whole: the lock is not left for others to break.
    RemoveRemoteFileQuietly(kJournalLock);
    // The client that was in step takes the line it wrote itself, not whatever the site holds by now.
    const CString newLine = firstLineOf(copy);
    if (written && wasInStep && !newLine.IsEmpty()) {
        WriteLegacyText(clientFile(u"Client.xml"), newLine);
        WriteLegacyText(clientFile(u"Client_PartLib.xml"), newLine);
    }
    QxFs::DeleteFile(copy);
    return written;
}
