// Lock files on the site: the journal lock "Server.xml.bak" and what file locks share with it (reading a
// holder, writing this host's identity).
#include "repository/FtpTransport.h"
#include "repository/HostId.h"
#include "repository/MyFtpConnection.h"

#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <chrono>
#include <thread>

namespace {

const char16_t kJournalLock[] = u"Server.xml.bak";

void pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

} // namespace

bool CMyFtpConnection::readLockHolder(const CString& lockPath, CString& holder) {
    const CString copy = workFile(u"LocalIP.txt");
    QxFs::DeleteFile(copy);
    if (!DownloadFile(lockPath, copy)) return false;
    holder.Empty();
    ReadFirstLine(copy, holder);
    holder.Trim();
    QxFs::DeleteFile(copy);
    return true;
}

bool CMyFtpConnection::writeLock(const CString& lockPath) {
    const CString copy = workFile(u"LocalIP.txt");
    QxFs::MakeFolders(GetTempFolder());
    if (!WriteLegacyText(copy, GetHostId())) return false;
    const bool written = uploadLockLike(copy, lockPath);
    QxFs::DeleteFile(copy);
    return written;
}

bool CMyFtpConnection::appendAndReadLock(const CString& lockPath, CString& holder) {
    const CString me = GetHostId();
    const CString copy = workFile(u"LocalIP.txt");
    QxFs::MakeFolders(GetTempFolder());
    const bool appended = WriteLegacyText(copy, me + u"\n") && m_pConnection && m_pConnection->AppendFile(copy, lockPath);
    QxFs::DeleteFile(copy);
    // A site that refuses to append gets the lock written whole, as a lock of one line.
    if (!appended) {
        holder = me;
        return writeLock(lockPath);
    }
    if (!readLockHolder(lockPath, holder)) return false;
    return holder.EqualsNoCase(me);
}

// The journal lock is taken by appending this host's identity to the lock file and reading it back: the
// first line names the holder. Two clients that find the journal free at the same moment both append,
// and exactly one of them reads its own identity first; the other waits. A holder gets lockWaits pauses
// of lockPauseMs (2.4 s in all), counted afresh for each new holder; a lock older than that, as a crashed
// client leaves it, is broken. A lock left by this host is this host's still.
void CMyFtpConnection::LockVersionFile() {
    const CString me = GetHostId();
    int waits = 0;
    int breaks = 0;
    CString lastHolder;
    for (;;) {
        CString holder;
        if (!readLockHolder(kJournalLock, holder) && appendAndReadLock(kJournalLock, holder)) return;
        if (holder.EqualsNoCase(me)) return;
        if (!holder.EqualsNoCase(lastHolder)) {
            lastHolder = holder;
            waits = 0;
        }
        if (waits == m_timings.lockWaits) {
            // Abandoned, or held longer than any update takes. Break it once or twice, then go on regardless.
            RemoveRemoteFileQuietly(kJournalLock);
            waits = 0;
            lastHolder.Empty();
            if (++breaks > 2) {
                writeLock(kJournalLock);
                return;
            }
            continue;
        }
        pause(m_timings.lockPauseMs);
        ++waits;
    }
}
