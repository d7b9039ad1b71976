// Files and folders of CMyFtpConnection: every transfer is tried once more after a fresh login.
#include "repository/FtpTransport.h"
#include "repository/HostId.h"
#include "repository/MyFtpConnection.h"
#include "repository/RemotePath.h"
#include "repository/RepositoryMessages.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

#include <random>
#include <unistd.h>

bool CMyFtpConnection::DownloadFile(CString remote, CString local) {
    remote.Trim();
    local.Trim();
    const CString localFolder = GetParentPath(local);
    if (!localFolder.IsEmpty() && !QxFs::IsFolder(localFolder)) QxFs::MakeFolders(localFolder);
    if (m_pConnection && m_pConnection->GetFile(remote, local)) return true;
    Disconnect();
    if (!ConnectServer()) return false;
    return m_pConnection->GetFile(remote, local);
}

bool CMyFtpConnection::DownloadFolder(CString remote, CString local) {
    remote.Trim();
    local.Trim();
    if (!remote.IsEmpty() && !remote.EndsWith(u"\\") && !remote.EndsWith(u"/")) remote += u'\\';
    QxFs::MakeFolders(local);
    CStringArray folders;
    CStringArray files;
    if (!listFolder(remote, folders, files, true)) return false;
    bool all = true;
    // Every file of this folder first, then its sub-folders, as the listing named them.
    for (const CString& file : files) all = DownloadFile(file, JoinPath(local, RemoteName(file))) && all;
    for (const CString& folder : folders) all = DownloadFolder(folder, JoinPath(local, RemoteName(folder))) && all;
    return all;
}

bool CMyFtpConnection::putWithReconnect(const CString& local, const CString& remote) {
    if (m_pConnection && m_pConnection->PutFile(local, remote)) return true;
    Disconnect();
    if (!ConnectServer()) return false;
    return m_pConnection->PutFile(local, remote);
}

namespace {

// "#" + this host + a random part + ".txt": two uploads into one folder at once never share a staging
// file. Only the characters that every site takes in a name are kept of the host.
CString uniqueStagingName() {
    CString name = u"#";
    const CString host = GetHostId();
    for (const char16_t ch : host.str()) {
        const bool plain = (ch >= u'0' && ch <= u'9') || (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z') ||
                           ch == u'.' || ch == u'-' || ch == u'_' || ch == u'(' || ch == u')';
        name += plain ? ch : u'_';
        if (name.GetLength() > 64) break;
    }
    static std::mt19937_64 random{std::random_device{}() ^ static_cast<unsigned long long>(::getpid())};
    return name + QxFormat(u"-%08x.txt", static_cast<unsigned>(random() & 0xffffffffu));
}

} // namespace

bool CMyFtpConnection::replaceStaged(const CString& local, const CString& target) {
    m_strStagingTarget = target;
    m_strStagingFolder = RemoteParent(target);
    m_strStagingTempPath = JoinRemote(m_strStagingFolder, uniqueStagingName());
    // The staging name is put with its folder, so that a reconnect in between cannot move it to the root.
    // What arrived is measured: a transfer broken off must never be renamed over the target.
    std::string bytes;
    const bool read = QxFs::ReadBytes(local, bytes);
    bool staged = read && putWithReconnect(local, m_strStagingTempPath);
    if (staged && m_pConnection->Size(m_strStagingTempPath).value_or(-1) != static_cast<long long>(bytes.size())) {
        m_pConnection->Remove(m_strStagingTempPath);
        staged = putWithReconnect(local, m_strStagingTempPath) &&
                 m_pConnection->Size(m_strStagingTempPath).value_or(-1) == static_cast<long long>(bytes.size());
    }
    if (!staged) {
        if (m_pConnection) m_pConnection->Remove(m_strStagingTempPath);
        return false;
    }
    // A server that renames over an existing file replaces it in one step. One that does not (a Windows
    // server) needs the target removed first. If the rename is refused even so, the file is put straight
    // to the target, so that the target is never left missing. A held target keeps its old file, and the
    // staging file is left beside it.
    if (m_pConnection->Rename(m_strStagingTempPath, target)) return true;
    const bool removed = m_pConnection->Remove(target);
    if (m_pConnection->Rename(m_strStagingTempPath, target)) return true;
    return m_pConnection->PutFile(local, target) || !removed;
}

bool CMyFtpConnection::UploadFile(CString local, CString remote) {
    local.Trim();
    remote.Trim();
    const bool uploaded = m_nStaging ? replaceStaged(local, remote) : putWithReconnect(local, remote);
    if (uploaded) return true;
    ShowRepositoryBox(QxFormat(u"文件 %s 上传失败，请确认是否被其它客户端用户调用！", RemoteName(remote)), MB_ICONWARNING);
    return false;
}

bool CMyFtpConnection::uploadLockLike(const CString& local, const CString& target) {
    return m_nStaging ? replaceStaged(local, target) : putWithReconnect(local, target);
}

bool CMyFtpConnection::RemotePathExists(const CString& remote) {
    if (!m_pConnection && !ConnectServer()) return false;
    const CString copy = workFile(u"Exist.dwg");
    const bool exists = DownloadFile(remote, copy);
    QxFs::DeleteFile(copy);
    return exists;
}

bool CMyFtpConnection::listFolder(const CString& folder, CStringArray& folders, CStringArray& files, bool withReconnect) {
    folders.RemoveAll();
    files.RemoveAll();
    if (!m_pConnection && !ConnectServer()) return false;
    const CString where = folder.IsEmpty() ? CString(u".") : folder;
    auto entries = m_pConnection->List(where);
    if (!entries && withReconnect) {
        Disconnect();
        if (!ConnectServer()) return false;
        entries = m_pConnection->List(where);
    }
    if (!entries) return false;
    for (const FtpListEntry& entry : *entries) (entry.isFolder ? folders : files).Add(JoinRemote(folder, entry.name));
    return true;
}

bool CMyFtpConnection::ListRemoteFolder(const CString& folder, CStringArray& folders, CStringArray& files) {
    return listFolder(folder, folders, files, true);
}

bool CMyFtpConnection::RemoteFileExistsInFolder(const CString& folder, const CString& name) {
    CStringArray folders;
    CStringArray files;
    if (!listFolder(folder, folders, files, false)) {
        returnToRoot();
        return false;
    }
    // The site may tell case: a name asked for in lower case is found with its extension in upper case.
    CString upperExtension = name;
    const int dot = upperExtension.ReverseFind(u'.');
    if (dot >= 0) upperExtension = upperExtension.Left(dot) + upperExtension.Mid(dot).MakeUpper();
    bool found = false;
    for (const CString& file : files) found = found || RemoteName(file) == name;
    for (const CString& file : files) found = found || RemoteName(file) == upperExtension;
    returnToRoot();
    return found;
}

bool CMyFtpConnection::RemoteFolderExists(const CString& path) {
    CString folder = path;
    folder.TrimRight(u'\\');
    if (folder.IsEmpty()) return IsConnected() || ConnectServer();
    CStringArray folders;
    CStringArray files;
    if (!listFolder(RemoteParent(folder), folders, files, false)) return false;
    for (CString found : folders) {
        found.Replace(u'/', u'\\');
        if (found.EqualsNoCase(folder)) return true;
    }
    return false;
}

bool CMyFtpConnection::CreateRemoteFolders(const CString& path) {
    if (!m_pConnection && !ConnectServer()) return false;
    const CString kept = m_pConnection->GetCurrentDirectory();
    if (path.IsEmpty()) return false;
    CString withEnd = path;
    withEnd.TrimRight(u'\\');
    withEnd += u'\\';
    for (int slash = withEnd.Find(u'\\'); slash >= 0; slash = withEnd.Find(u'\\', slash + 1)) {
        const CString prefix = withEnd.Left(slash);
        if (prefix.IsEmpty()) continue;
        const bool ok = m_pConnection->SetCurrentDirectory(prefix) || m_pConnection->CreateDirectory(prefix);
        m_pConnection->SetCurrentDirectory(kept);
        if (!ok) return false;
    }
    return true;
}

bool CMyFtpConnection::IsPartLibInUse() {
    const CString lockFile = u"Part2lib\\Part2Lib.ldb";
    if (!RemotePathExists(lockFile)) return false;
    // A lock file that can be removed was stale; one that cannot is held by the part library's user.
    return !m_pConnection->Remove(lockFile);
}
