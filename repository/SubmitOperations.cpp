// Changes on the site, each followed by its journal lines: a client in step with the journal it finds under
// the journal lock stays in step after its change, one that was behind stays behind. A removal or rename
// alone changes no journal line, so it moves no client's version: syncing then could only skip the
// changes of other clients.
#include "repository/FtpTransport.h"
#include "repository/MyFtpConnection.h"
#include "repository/RemotePath.h"
#include "repository/RepositoryMessages.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

#include <chrono>
#include <thread>

namespace {

CString asFolderPath(CString path) {
    path.TrimRight(u'\\');
    return path + u"\\";
}

CString withoutFolderEnd(CString path) {
    path.Trim();
    path.TrimRight(u'\\');
    return path;
}

} // namespace

bool CMyFtpConnection::removeRemote(CString path, bool quiet) {
    path.Trim();
    if (quiet) {
        if (!m_pConnection && !ConnectServer()) return false;
        m_pConnection->Remove(path);
        return true;
    }
    bool removed = false;
    if (m_pConnection) {
        if (!RemotePathExists(path)) return true;
        removed = m_pConnection->Remove(path);
    }
    if (!removed) {
        Disconnect();
        if (!ConnectServer()) return false;
        if (RemotePathExists(path) && !m_pConnection->Remove(path)) {
            ShowRepositoryBox(QxFormat(u"文件 %s 无法删除，请确认是否被其它客户端用户调用！", path), MB_ICONWARNING);
            return false;
        }
    }
    return true;
}

bool CMyFtpConnection::RemoveRemoteFile(CString path) { return removeRemote(std::move(path), false); }

bool CMyFtpConnection::RemoveRemoteFileQuietly(CString path) { return removeRemote(std::move(path), true); }

bool CMyFtpConnection::RenameRemoteFile(CString oldPath, CString newPath) {
    oldPath.Trim();
    newPath.Trim();
    if (!RemotePathExists(oldPath)) {
        ShowRepositoryBox(QxFormat(u"重命名文件<%s>服务器上不存在!", oldPath), MB_ICONWARNING);
        return false;
    }
    if (RemotePathExists(newPath)) {
        if (!AskRepositoryYesNo(QxFormat(u"重命名文件%s已经存在,是否覆盖？", newPath))) return false;
        RemoveRemoteFile(newPath);
    }
    if (!m_pConnection->Rename(oldPath, newPath)) {
        Disconnect();
        if (!ConnectServer() || !m_pConnection->Rename(oldPath, newPath)) {
            ShowRepositoryBox(QxFormat(u"文件%s无法更名，请确认是否被其它客户端用户调用！", oldPath), MB_ICONWARNING);
            return false;
        }
    }
    return true;
}

bool CMyFtpConnection::RenameRemoteFolder(CString oldPath, CString newPath) {
    oldPath = withoutFolderEnd(oldPath);
    newPath = withoutFolderEnd(newPath);
    if (!RemoteFolderExists(oldPath)) {
        ShowRepositoryBox(QxFormat(u"重命名文件夹<%s>服务器上不存在!", oldPath), MB_ICONWARNING);
        return false;
    }
    if (RemoteFolderExists(newPath)) {
        ShowRepositoryBox(QxFormat(u"重命名文件夹%s已经存在,不能重命名！", newPath), MB_ICONWARNING);
        return false;
    }
    bool renamed = m_pConnection->Rename(oldPath, newPath);
    if (!renamed) {
        Disconnect();
        renamed = ConnectServer() && m_pConnection->Rename(oldPath, newPath);
    }
    if (!renamed) {
        ShowRepositoryBox(QxFormat(u"文件%s无法更名，请确认是否被其它客户端用户调用！", oldPath), MB_ICONWARNING);
        return false;
    }
    return true;
}

bool CMyFtpConnection::SubmitFile(CString local, CString remote) {
    local.Trim();
    remote.Trim();
    if (!m_pConnection && !ConnectServer()) {
        ShowRepositoryBox(u"\n网络无连接,请检查网络连接后再重试!", MB_ICONERROR);
        return false;
    }
    CheckClientVersion();  // gives an empty site its journal
    // The person has seen why a failed upload failed; the site's journal is untouched.
    if (!UploadFile(local, remote)) return true;
    return finishJournalUpdate(CStringArray{remote}, CStringArray{u"MOD"});
}

bool CMyFtpConnection::SubmitDelete(CString remote) {
    remote.Trim();
    if (!RemotePathExists(remote)) return true;
    CheckClientVersion();
    if (!RemoveRemoteFile(remote)) return false;
    return finishJournalUpdate(CStringArray{remote}, CStringArray{u"DEL"});
}

bool CMyFtpConnection::SubmitRenameFile(CString oldPath, CString newPath) {
    oldPath.Trim();
    newPath.Trim();
    if (!m_pConnection && !ConnectServer()) return false;
    CheckClientVersion();
    if (!RenameRemoteFile(oldPath, newPath)) return false;
    return finishJournalUpdate(CStringArray{oldPath, newPath}, CStringArray{u"DEL", u"MOD"});
}

bool CMyFtpConnection::SubmitRenameFolder(CString oldPath, CString newPath) {
    oldPath = withoutFolderEnd(oldPath);
    newPath = withoutFolderEnd(newPath);
    if (!m_pConnection && !ConnectServer()) return false;
    CheckClientVersion();
    if (!RenameRemoteFolder(oldPath, newPath)) return false;
    return finishJournalUpdate(CStringArray{oldPath + u"\\", newPath + u"\\"}, CStringArray{u"DEL", u"REN"});
}

bool CMyFtpConnection::SubmitNewFolder(const CString& parent, const CString& name) {
    const CString path = withoutFolderEnd(JoinRemote(withoutFolderEnd(parent), name));
    if (!m_pConnection && !ConnectServer()) return false;
    CheckClientVersion();
    if (!CreateRemoteFolders(path)) {
        ShowRepositoryBox(QxFormat(u"创建目录%s失败！", path), MB_ICONWARNING);
        return false;
    }
    // A folder's journal path ends in "\", so that a client taking the journal can tell it from a file.
    return finishJournalUpdate(CStringArray{asFolderPath(path)}, CStringArray{u"MOD"});
}

bool CMyFtpConnection::SubmitDeleteFolder(CString folder) {
    folder = withoutFolderEnd(folder);
    if (folder.IsEmpty()) return false;  // the root itself is never removed
    if (!m_pConnection && !ConnectServer()) return false;
    if (!m_pConnection->SetCurrentDirectory(folder)) return true;
    returnToRoot();
    CheckClientVersion();
    CStringArray folders;
    CStringArray files;
    listFolder(folder, folders, files, true);
    for (const CString& file : files) {
        returnToRoot();
        m_pConnection->Remove(file);
    }
    for (const CString& sub : folders) {
        returnToRoot();
        SubmitDeleteFolder(asFolderPath(sub));
    }
    returnToRoot();
    if (!m_pConnection->RemoveDirectory(folder)) return false;
    return finishJournalUpdate(CStringArray{asFolderPath(folder)}, CStringArray{u"DEL"});
}

bool CMyFtpConnection::SubmitFolderTree(const CString& parent, const CString& remote, const CString& local) {
    const CString remoteFolder = withoutFolderEnd(remote);
    const CString name = RemoteName(remoteFolder);
    // A folder is looked for by a listing: a download cannot tell that a folder exists.
    if (!RemoteFolderExists(remoteFolder) && !SubmitNewFolder(parent, name)) return false;
    const CString target = JoinRemote(withoutFolderEnd(parent), name);
    for (const QxFs::Entry& entry : QxFs::List(local)) {
        const CString localPath = JoinPath(local, entry.name);
        if (entry.isFolder) {
            if (!SubmitFolderTree(target, JoinRemote(remoteFolder, entry.name), localPath)) return false;
            continue;
        }
        const CString extension = GetFileExtension(entry.name);
        if (!extension.EqualsNoCase(u"dwg") && !extension.EqualsNoCase(u"itm") && !extension.EqualsNoCase(u"prj"))
            continue;
        std::this_thread::sleep_for(std::chrono::milliseconds(m_timings.treeFilePauseMs));
        SubmitFile(localPath, JoinRemote(target, entry.name));
    }
    return true;
}
