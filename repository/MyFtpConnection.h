// CMyFtpConnection: the client of the library repository on an FTP site. It keeps one connection, reads
// its login from the scrambled login file, moves files and folders with one reconnect after a failure,
// and runs the repository protocol over the site's files: the version journal "Server.xml" under its lock
// "Server.xml.bak", the backup "Server.backup", the operation log "OS.log", and a lock "NAME.bak" beside
// each checked-out file. Remote paths are relative to the root folder of the login file, with backslashes.
//
// The operations live in several files: FtpConnect.cpp (the session), FtpTransfer.cpp (files and folders),
// JournalLock.cpp, ClientVersion.cpp, JournalUpdate.cpp (the journal), SubmitOperations.cpp (changes with
// their journal lines) and FileLocks.cpp (check-out and check-in).
#pragma once

#include "repository/FtpTimings.h"
#include "support/CArray.h"
#include "support/CString.h"

#include <memory>

class CFtpTransport;

class QX_API CMyFtpConnection {
public:
    // The login file "LocalData\QxFTPLoginInfo.sys" of the install folder.
    CMyFtpConnection();
    explicit CMyFtpConnection(const CString& loginFile);
    virtual ~CMyFtpConnection();
    CMyFtpConnection(const CMyFtpConnection&) = delete;
    CMyFtpConnection& operator=(const CMyFtpConnection&) = delete;

    void SetTimings(const FtpTimings& timings) { m_timings = timings; }
    const FtpTimings& GetTimings() const { return m_timings; }

    // --- The session ---
    bool ConnectServer();
    void Disconnect();
    bool IsConnected() const { return m_pConnection != nullptr; }
    const CString& GetRootPath() const { return m_strRootPath; }
    // "TempFTP\" under the install folder: where the protocol's working copies live.
    CString GetTempFolder() const;
    void ClearTempFolder();

    // --- Files and folders ---
    bool DownloadFile(CString remote, CString local);
    bool DownloadFolder(CString remote, CString local);
    bool UploadFile(CString local, CString remote);
    bool RemotePathExists(const CString& remote);
    bool RemoteFileExistsInFolder(const CString& folder, const CString& name);
    bool RemoteFolderExists(const CString& path);
    bool ListRemoteFolder(const CString& folder, CStringArray& folders, CStringArray& files);
    bool CreateRemoteFolders(const CString& path);
    bool RemoveRemoteFile(CString path);
    // No message, and true after a connected attempt: what the locks use.
    bool RemoveRemoteFileQuietly(CString path);
    bool IsPartLibInUse();

    // --- The journal ---
    void LockVersionFile();
    void BackupVersionFile(const CString& journal);
    bool RepairVersionFile(const CString& journal, const CStringArray& paths, const CStringArray& operations);
    bool WriteOperationLog(const CString& text);
    // 0: in step with the site's journal (or nothing to compare); 1: behind.
    int CheckClientVersion();
    bool CheckServerVersion(bool& mainLibChanged);
    bool SyncClientVersion();
    bool FindMainLibChange(const CString& journal, CString version);

    // --- Changes with their journal lines ---
    bool SubmitFile(CString local, CString remote);
    bool SubmitDelete(CString remote);
    bool SubmitRenameFile(CString oldPath, CString newPath);
    bool SubmitRenameFolder(CString oldPath, CString newPath);
    bool SubmitNewFolder(const CString& parent, const CString& name);
    bool SubmitDeleteFolder(CString folder);
    bool SubmitFolderTree(const CString& parent, const CString& remote, const CString& local);
    bool RenameRemoteFile(CString oldPath, CString newPath);
    bool RenameRemoteFolder(CString oldPath, CString newPath);

    // --- File locks ---
    bool CheckOutFile(const CString& local, const CString& folder, const CString& name);
    void CancelCheckOut(const CString& local, const CString& folder);
    bool TakeLock(const CString& lockPath);
    bool ReleaseLock(const CString& path);
    bool IsCheckOutRevoked(const CString& path);
    bool IsCheckOutLost(const CString& path);
    // The host named in the lock of path ("path.bak"); false when there is no lock.
    bool GetLockHolder(const CString& path, CString& holder) { return readLockHolder(path + u".bak", holder); }

private:
    bool returnToRoot();
    bool putWithReconnect(const CString& local, const CString& remote);
    // Puts local beside target under a staging name unique to this upload ("#HOST-RANDOM.txt"), checks its
    // size there and renames it over target, so that the old file stays on the site until the new one has
    // arrived whole. False when it could not be staged, or when the target may be left without its content.
    bool replaceStaged(const CString& local, const CString& target);
    // Uploads local as target, through the staging name when staging is on.
    bool uploadLockLike(const CString& local, const CString& target);
    bool listFolder(const CString& folder, CStringArray& folders, CStringArray& files, bool withReconnect);
    bool removeRemote(CString path, bool quiet);
    // The holder written in a lock file; false when it cannot be downloaded.
    bool readLockHolder(const CString& lockPath, CString& holder);
    bool writeLock(const CString& lockPath);
    bool askToRevoke(const CString& holder, const CString& name);
    bool journalMissingOnSite();
    void giveSiteItsJournal(const CString& fallbackLine);
    bool finishJournalUpdate(const CStringArray& paths, const CStringArray& operations);
    // The journal and its backup: always staged, whatever "Ftp.bg" says.
    bool writeJournalLike(const CString& local, const CString& target);
    // Appends this host's identity to a lock file and reads it back: true when this host is the first line,
    // else `holder` names the winner. Two clients that find a lock free together cannot both take it.
    bool appendAndReadLock(const CString& lockPath, CString& holder);
    CString workFile(const CString& name) const;
    CString clientFile(const CString& name) const;

    CString m_strRootPath;
    std::unique_ptr<CFtpTransport> m_pConnection;
    CString m_strLoginFile;
    CString m_strInstallDir;
    int m_nStaging = 0;
    CString m_strStagingFolder;
    CString m_strStagingTarget;
    CString m_strStagingTempPath;
    FtpTimings m_timings;
};
