// File locks: "NAME.bak" beside a file names the host that has it checked out. Locks are advisory and
// cooperative: a person may revoke another's lock, and the one revoked is refused at check-in.
#include "repository/HostId.h"
#include "repository/MyFtpConnection.h"
#include "repository/RemotePath.h"
#include "repository/RepositoryMessages.h"

#include "platform/host/HostOutput.h"

namespace {

CString lockOf(const CString& path) { return path + u".bak"; }

} // namespace

bool CMyFtpConnection::askToRevoke(const CString& holder, const CString& name) {
    return AskRepositoryYesNo(
        QxFormat(u"主机IP为%s的用户正对文件<%s>进行操作，可等待其完成后再继续...\n是否强制撤销其库修改操作?", holder, name));
}

bool CMyFtpConnection::CheckOutFile(const CString& local, const CString& folder, const CString& name) {
    const CString remote = JoinRemote(folder, name);
    if (!RemotePathExists(remote)) {
        ShowRepositoryBox(QxFormat(u"服务器上不存在<%s>文件！", remote), MB_ICONINFORMATION);
        return true;
    }
    const CString lockPath = lockOf(remote);
    CString holder;
    // A free file is locked the way the journal is, by appending and reading back, so that of two hosts
    // checking it out at the same moment one wins and the other is asked as if the file had been held.
    // The lock comes before the download; a download that fails gives the lock up again.
    if (!readLockHolder(lockPath, holder) && appendAndReadLock(lockPath, holder)) {
        if (DownloadFile(remote, local)) return true;
        RemoveRemoteFileQuietly(lockPath);
        return false;
    }
    if (!holder.EqualsNoCase(GetHostId())) {
        if (!askToRevoke(holder, name)) return false;
        return DownloadFile(remote, local) && writeLock(lockPath);
    }
    // Checked out by this host already: the file is fetched again and the lock is left exactly as it is,
    // in its own folder, so that a holder never loses its own lock by checking out twice.
    return DownloadFile(remote, local);
}

void CMyFtpConnection::CancelCheckOut(const CString& local, const CString& folder) {
    const CString lockPath = lockOf(JoinRemote(folder, RemoteName(local)));
    // A lock that another host took over is that host's: only this host's own lock is removed.
    CString holder;
    if (readLockHolder(lockPath, holder) && holder.EqualsNoCase(GetHostId())) RemoveRemoteFile(lockPath);
    Disconnect();
}

bool CMyFtpConnection::TakeLock(const CString& lockPath) {
    CString holder;
    if (!readLockHolder(lockPath, holder) && appendAndReadLock(lockPath, holder)) return true;
    if (!holder.EqualsNoCase(GetHostId()) && !askToRevoke(holder, lockPath)) return false;
    // Written anew over the old lock: at no moment is the file free for a third client.
    return writeLock(lockPath);
}

bool CMyFtpConnection::ReleaseLock(const CString& path) {
    const CString lockPath = lockOf(path);
    CString holder;
    if (readLockHolder(lockPath, holder) && !holder.EqualsNoCase(GetHostId()) && !askToRevoke(holder, RemoteName(path)))
        return false;
    RemoveRemoteFileQuietly(lockPath);
    return true;
}

bool CMyFtpConnection::IsCheckOutRevoked(const CString& path) {
    if (!RemotePathExists(path)) return false;
    CString holder;
    if (!readLockHolder(lockOf(path), holder)) {
        ShowRepositoryBox(QxFormat(u"文件<%s>的库修改作已被强制撤销，无法入库...", path), MB_ICONINFORMATION);
        return true;
    }
    if (holder.EqualsNoCase(GetHostId())) return false;
    ShowRepositoryBox(QxFormat(u"文件<%s>的库修改作已被主机IP为%s的用户强制撤销，无法入库...", path, holder), MB_ICONINFORMATION);
    return true;
}

bool CMyFtpConnection::IsCheckOutLost(const CString& path) {
    CString holder;
    if (!readLockHolder(lockOf(path), holder)) return true;
    return !holder.EqualsNoCase(GetHostId());
}
