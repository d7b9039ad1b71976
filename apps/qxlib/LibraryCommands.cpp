// The commands of qxlib.
#include "LibraryCommands.h"

#include "CheckOutList.h"
#include "platform/InstallPath.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "repository/FtpLoginFile.h"
#include "repository/HostId.h"
#include "repository/MyFtpConnection.h"
#include "repository/RemotePath.h"
#include "repository/VersionFile.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Format.h"
#include "support/PathText.h"
#include "support/PrintableText.h"

#include <iostream>
#include <sys/stat.h>

namespace {

CString installFolder() { return GetInstallPath_CV(); }

CString loginFile() { return installFolder() + u"LocalData\\QxFTPLoginInfo.sys"; }

CString localCopyOf(const CString& remote) { return installFolder() + remote; }

bool isFolderPath(const CString& path) { return path.EndsWith(u"\\"); }

// What a person reads: a local path in this machine's own form; a path of the site or its journal, a host
// name or a version line as it stands, but never with its control characters.
CString shownLocal(const CString& logicPath) { return QxPrintable(QxFs::ToNativeText(logicPath)); }
CString shown(const CString& text) { return QxPrintable(text); }

// A connected client, or nullptr after saying why.
std::unique_ptr<CMyFtpConnection> connect() {
    if (!FileExists(loginFile())) {
        std::cerr << "qxlib: no login file " << shownLocal(loginFile()) << "; run qxlib setup first\n";
        return nullptr;
    }
    auto connection = std::make_unique<CMyFtpConnection>();
    if (!connection->ConnectServer()) {
        std::cerr << "\nqxlib: the library site cannot be reached\n";
        return nullptr;
    }
    return connection;
}

bool isSafeRemoteName(const CString& name) {
    if (!IsSafeFolderName(name)) return false;
    for (const char16_t ch : name.str())
        if (ch == u':' || ch < 0x20) return false;
    return true;
}

// Journal paths come from the site: one that would leave the install folder is passed over.
bool isSafeJournalPath(const CString& path) {
    CString body = path;
    body.TrimRight(u'\\');
    if (body.IsEmpty()) return false;
    for (int start = 0;;) {
        const int slash = body.Find(u'\\', start);
        if (!isSafeRemoteName(body.Mid(start, slash < 0 ? body.GetLength() - start : slash - start))) return false;
        if (slash < 0) return true;
        start = slash + 1;
    }
}

// Shows what the repository shows and remembers whether it warned: SubmitFile tells a failed upload only
// by its box.
class WarningWatch final : public IHostOutput {
public:
    WarningWatch() : m_console(HostOutput()) { SetHostOutput(this); }
    ~WarningWatch() override { SetHostOutput(nullptr); }
    WarningWatch(const WarningWatch&) = delete;
    WarningWatch& operator=(const WarningWatch&) = delete;

    void Print(const CString& text) override { m_console.Print(text); }
    void MessageBox(const CString& text, const CString& caption, unsigned style) override {
        if (style == MB_ICONWARNING || style == MB_ICONERROR) warned = true;
        m_console.MessageBox(text, caption, style);
    }

    bool warned = false;

private:
    IHostOutput& m_console;
};

} // namespace

std::optional<CString> RemotePathFromPerson(const std::string& text) {
    CString path = CString::FromUtf8(text);
    path.Replace(u'/', u'\\');
    path.Trim();
    path.TrimLeft(u'\\');
    if (!isSafeJournalPath(path)) return std::nullopt;
    return path;
}

int RunSetup(const SetupOptions& options) {
    FtpLoginLines lines;
    lines[kLoginRootPath] = options.root;
    lines[kLoginHost] = options.host;
    lines[kLoginPort] = QxFormat(u"%d", options.port);
    lines[kLoginAnonymous] = options.user.IsEmpty() ? u"1" : u"0";
    lines[kLoginUser] = options.user;
    lines[kLoginPassive] = options.passive ? u"1" : u"0";
    if (!options.user.IsEmpty()) {
        const auto password = HostPrompts().AskSecret(QxFormat(u"Password of %s on %s", options.user, options.host));
        if (!password) {
            std::cerr << "qxlib: setup cancelled\n";
            return 1;
        }
        lines[kLoginPassword] = *password;
    }
    const CString file = loginFile();
    QxFs::MakeFolders(installFolder() + u"LocalData");
    if (!QxFs::Exists(file) && !QxFs::WriteAtomic(file, "", S_IRUSR | S_IWUSR)) {
        std::cerr << "qxlib: " << shownLocal(file) << " cannot be made\n";
        return 1;
    }
    if (!WriteLoginInfo(file, lines)) {
        std::cerr << "qxlib: " << shownLocal(file) << " cannot be written\n";
        return 1;
    }
    const CString marker = installFolder() + u"LocalData\\Ftp.bg";
    if (options.staging) QxFs::WriteAtomic(marker, "");
    else if (QxFs::Exists(marker)) QxFs::DeleteFile(marker);
    std::cout << "wrote " << shownLocal(file) << '\n';
    return 0;
}

int RunStatus() {
    auto connection = connect();
    if (!connection) return 1;
    const bool behind = connection->CheckClientVersion() != 0;
    CString clientLine;
    ReadFirstLine(installFolder() + u"Client.xml", clientLine);
    std::cout << "host: " << shown(GetHostId()) << '\n';
    std::cout << "client version: " << (clientLine.IsEmpty() ? CString(u"(none)") : shown(clientLine)) << '\n';
    // A client that has taken nothing yet counts as in step for the repository, but not for a person.
    std::cout << (behind || clientLine.IsEmpty() ? "behind the site's journal: run qxlib sync\n"
                                                 : "in step with the site's journal\n");
    const CheckOutList checkOuts(installFolder());
    for (const CString& path : checkOuts.paths()) {
        CString holder;
        std::cout << "checked out: " << shown(path) << "  ";
        if (!connection->GetLockHolder(path, holder)) std::cout << "(lock removed: check-in will be refused)\n";
        else if (holder.EqualsNoCase(GetHostId())) std::cout << "(held by this host)\n";
        else std::cout << "(taken over by " << shown(holder) << ": check-in will be refused)\n";
    }
    return 0;
}

int RunCheckOut(const CString& file) {
    auto connection = connect();
    if (!connection) return 1;
    if (!connection->RemotePathExists(file)) {
        connection->CheckOutFile(localCopyOf(file), RemoteParent(file), RemoteName(file));  // says it is not there
        return 1;
    }
    // Checking out again would fetch the site's copy over the person's work: qxlib keeps the work.
    CString holder;
    if (QxFs::Exists(localCopyOf(file)) && connection->GetLockHolder(file, holder) && holder.EqualsNoCase(GetHostId())) {
        std::cout << shown(file) << " is checked out by this host already; the local copy is kept "
                     "(qxlib cancel, then checkout, fetches the site's copy)\n";
        CheckOutList(installFolder()).add(file);
        return 0;
    }
    if (!connection->CheckOutFile(localCopyOf(file), RemoteParent(file), RemoteName(file))) {
        std::cerr << "qxlib: " << shown(file) << " was not checked out\n";
        return 1;
    }
    CheckOutList(installFolder()).add(file);
    std::cout << "checked out " << shown(file) << " to " << shownLocal(localCopyOf(file)) << '\n';
    return 0;
}

int RunSubmit(const CString& file) {
    const CString local = localCopyOf(file);
    if (!QxFs::Exists(local) || QxFs::IsFolder(local)) {
        std::cerr << "qxlib: no local file " << shownLocal(local) << '\n';
        return 1;
    }
    auto connection = connect();
    if (!connection) return 1;
    if (connection->IsCheckOutRevoked(file)) {
        std::cerr << "qxlib: check-in of " << shown(file) << " refused: check it out first; if it was taken over, "
                     "keep your copy under another name and check the file out again\n";
        return 1;
    }
    const CString parent = RemoteParent(file);
    if (!parent.IsEmpty() && !connection->RemoteFolderExists(parent) &&
        !connection->SubmitNewFolder(RemoteParent(parent), RemoteName(parent)))
        return 1;
    WarningWatch watch;
    if (!connection->SubmitFile(local, file) || watch.warned) {
        std::cerr << "qxlib: " << shown(file) << " was not submitted, or the site's journal was not updated\n";
        return 1;
    }
    connection->ReleaseLock(file);
    CheckOutList(installFolder()).remove(file);
    std::cout << "submitted " << shown(file) << '\n';
    return 0;
}

int RunCancel(const CString& file) {
    auto connection = connect();
    if (!connection) return 1;
    connection->CancelCheckOut(localCopyOf(file), RemoteParent(file));
    CheckOutList(installFolder()).remove(file);
    std::cout << "cancelled the check-out of " << shown(file) << '\n';
    return 0;
}

int RunDelete(const CString& path) {
    auto connection = connect();
    if (!connection) return 1;
    const bool done = isFolderPath(path) ? connection->SubmitDeleteFolder(path) : connection->SubmitDelete(path);
    if (!done) {
        std::cerr << "qxlib: " << shown(path) << " was not deleted\n";
        return 1;
    }
    std::cout << "deleted " << shown(path) << '\n';
    return 0;
}

int RunMakeFolder(const CString& path) {
    auto connection = connect();
    if (!connection) return 1;
    CString folder = path;
    folder.TrimRight(u'\\');
    if (!connection->SubmitNewFolder(RemoteParent(folder), RemoteName(folder))) return 1;
    std::cout << "made " << shown(folder) << "\\\n";
    return 0;
}

int RunRename(const CString& oldPath, const CString& newPath) {
    auto connection = connect();
    if (!connection) return 1;
    const bool done = isFolderPath(oldPath) ? connection->SubmitRenameFolder(oldPath, newPath)
                                            : connection->SubmitRenameFile(oldPath, newPath);
    if (!done) {
        std::cerr << "qxlib: " << shown(oldPath) << " was not renamed\n";
        return 1;
    }
    std::cout << "renamed " << shown(oldPath) << " to " << shown(newPath) << '\n';
    return 0;
}

int RunPushTree(const CString& localFolder, const CString& remoteFolder) {
    if (!QxFs::IsFolder(localFolder)) {
        std::cerr << "qxlib: no local folder " << shownLocal(localFolder) << '\n';
        return 1;
    }
    auto connection = connect();
    if (!connection) return 1;
    CString remote = remoteFolder;
    remote.TrimRight(u'\\');
    if (!connection->SubmitFolderTree(RemoteParent(remote), remote, localFolder)) return 1;
    std::cout << "pushed " << shownLocal(localFolder) << " to " << shown(remote) << "\\\n";
    return 0;
}

int RunSync() {
    auto connection = connect();
    if (!connection) return 1;
    const CString journalCopy = connection->GetTempFolder() + u"QxLibJournal.xml";
    QxFs::DeleteFile(journalCopy);
    if (!connection->DownloadFile(u"Server.xml", journalCopy)) {
        std::cerr << "qxlib: the site has no journal to take\n";
        return 1;
    }
    CString clientLine;
    ReadFirstLine(installFolder() + u"Client.xml", clientLine);
    const CString clientStamp = StampOfVersionLine(clientLine.Trim());
    COperateVersionFile journal(journalCopy);
    journal.Load();
    QxFs::DeleteFile(journalCopy);

    int failed = 0;
    // Oldest first, so that a folder is made before the files that came into it.
    const auto& entries = journal.GetEntries();
    for (int i = entries.GetUpperBound(); i >= 0; --i) {
        const STRUCT_FILE_INFO& entry = entries[i];
        if (!clientStamp.IsEmpty() && entry.m_strVersion.CompareNoCase(clientStamp) <= 0) continue;
        if (!isSafeJournalPath(entry.m_strPath)) {
            std::cerr << "qxlib: passed over the journal path \"" << shown(entry.m_strPath) << "\"\n";
            continue;
        }
        const CString local = localCopyOf(entry.m_strPath);
        if (entry.m_strOperation == u"DEL") {
            // What a person has locally is never removed for them.
            std::cout << "removed on the site: " << shown(entry.m_strPath) << " (the local copy stays)\n";
            continue;
        }
        // A later change may have renamed or removed it: what is no longer on the site is passed over.
        const bool folder = isFolderPath(entry.m_strPath);
        CString item = entry.m_strPath;
        item.TrimRight(u'\\');
        const bool onSite = folder ? connection->RemoteFolderExists(item)
                                   : connection->RemoteFileExistsInFolder(RemoteParent(item), RemoteName(item));
        if (!onSite) {
            std::cout << "no longer on the site: " << shown(entry.m_strPath) << '\n';
            continue;
        }
        bool done;
        if (entry.m_strOperation == u"REN") done = connection->DownloadFolder(item, local);
        else if (folder) done = QxFs::MakeFolders(local);
        else done = connection->DownloadFile(item, local);
        std::cout << (done ? "took " : "could not take ") << shown(entry.m_strPath) << '\n';
        if (!done) ++failed;
    }
    if (failed > 0) {
        std::cerr << "qxlib: " << failed << " item(s) could not be taken; the client version stays behind\n";
        return 1;
    }
    if (!connection->SyncClientVersion()) {
        std::cerr << "qxlib: the client version could not be brought to the site's\n";
        return 1;
    }
    std::cout << "in step with the site's journal\n";
    return 0;
}
