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

} // namespace

void CMyFtpConnection::BackupVersionFile(const CString& journal) {
    const int journalCount = nonEmptyLines(journal).GetSize();
    const CString backupCopy = workFile(kBackup);
    QxFs::DeleteFile(backupCopy);
    DownloadFile(kBackup, backupCopy);
    const int backupCount = nonEmptyLines(backupCopy).GetSize();
    QxFs::DeleteFile(backupCopy);
    // A journal that has shrunk never replaces the backup. The new backup is staged, so that the old one
    // stays until the new one has arrived whole.
    const bool renewed = (backupCount == 0 || backupCount <= journalCount) && replaceStaged(journal, kBackup);
    if (!renewed) WriteOperationLog(u"备份Server.xml文件时出错！");
}

bool CMyFtpConnection::RepairVersionFile(const CString& journal, const CStringArray& paths, const CStringArray& operations) {
    const CString backupCopy = workFile(kBackup);
    QxFs::DeleteFile(backupCopy);
    DownloadFile(kBackup, backupCopy);
    CStringArray journalLines = nonEmptyLines(journal);
    const CStringArray backupLines = nonEmptyLines(backupCopy);
    const int backupCount = backupLines.GetSize();

    if (backupCount <= journalLines.GetSize()) {
        const int journalCount = journalLines.GetSize();
        if (journalCount == 0) WriteOperationLog(u"更新后Server.xml文件数据为空！");
        if (journalCount == 1) WriteOperationLog(QxFormat(u"%s,更新Server.xml文件仅有一条数据！", journalLines[0]));
        if (backupCount == 0) WriteOperationLog(u"Server.backup文件不存在或数据为空！");
        if (backupCount == 1) WriteOperationLog(QxFormat(u"%s,Server.backup文件仅有一条数据！", backupLines[0]));
        QxFs::DeleteFile(backupCopy);
        return true;
    }

    // Lines were lost: this client's change is applied again to the good copy.
    QxFs::CopyFile(backupCopy, journal, true);
    COperateVersionFile restored(journal);
    restored.Load();
    restored.RemoveEntries(paths);
    restored.AddEntries(paths, operations);
    journalLines = nonEmptyLines(journal);
    if (journalLines.GetSize() < backupCount) {
        const CString text = journalLines.IsEmpty()
                                 ? CString(u"利用备份数据更新Server.xml仍然出错！")
                                 : QxFormat(u"%s,利用备份数据更新Server.xml仍然出错！", journalLines[journalLines.GetUpperBound()]);
        WriteOperationLog(text);
        ShowRepositoryBox(text, MB_ICONERROR);
        QxFs::DeleteFile(backupCopy);
        QxFs::DeleteFile(journal);
        return false;
    }
    QxFs::DeleteFile(backupCopy);
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

bool CMyFtpConnection::finishJournalUpdate(const CStringArray& paths, const CStringArray& operations, bool wasInStep) {
    LockVersionFile();
    const CString copy = workFile(kJournal);
    QxFs::DeleteFile(copy);
    if (DownloadFile(kJournal, copy)) {
        // The round trip through "Server_Tmp.xml" finds a journal that another program holds open.
        if (m_pConnection->Rename(kJournal, u"Server_Tmp.xml") && !m_pConnection->Rename(u"Server_Tmp.xml", kJournal)) {
            Disconnect();
            if (ConnectServer()) m_pConnection->Rename(u"Server_Tmp.xml", kJournal);
        }
        BackupVersionFile(copy);
    } else if (!journalMissingOnSite()) {
        // The journal is there but cannot be read: writing a new one would shorten it.
        RemoveRemoteFileQuietly(kJournalLock);
        return false;
    }

    COperateVersionFile journal(copy);
    bool changed;
    if (paths.GetSize() == 1) {
        changed = journal.UpdateEntry(paths[0], operations[0]);
    } else {
        journal.Clear();
        journal.Load();
        journal.RemoveEntries(paths);
        changed = journal.AddEntries(paths, operations);
    }
    if (!changed) {
        QxFs::DeleteFile(copy);
        return false;
    }
    if (!RepairVersionFile(copy, paths, operations)) return false;
    if (UploadFile(copy, kJournal)) RemoveRemoteFileQuietly(kJournalLock);
    QxFs::DeleteFile(copy);
    if (wasInStep) SyncClientVersion();
    return true;
}
