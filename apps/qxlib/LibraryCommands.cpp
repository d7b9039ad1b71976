// The commands of qxlib.
#include "LibraryCommands.h"

#include "CheckOutList.h"
#include "SiteView.h"
#include "TakenFiles.h"
#include "platform/InstallPath.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"
#include "repository/FtpLoginFile.h"
#include "repository/HostId.h"
#include "repository/LibraryPaths.h"
#include "repository/MyFtpConnection.h"
#include "repository/RemotePath.h"
#include "repository/VersionFile.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Format.h"
#include "support/PathText.h"
#include "support/TextFile.h"
#include "support/PrintableText.h"

#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

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

// What the login file can keep: its scrambling holds the low byte of each character, and a line end or
// another control character would break the login dialogue.
bool keptByLoginFile(const CString& text) {
    for (const char16_t ch : text.str())
        if (ch > 0xff || ch < 0x20 || ch == 0x7f) return false;
    return true;
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
        if (style == MB_ICONWARNING || style == MB_ICONERROR) ++warnings;
        m_console.MessageBox(text, caption, style);
    }

    int warnings = 0;

private:
    IHostOutput& m_console;
};

} // namespace

std::optional<CString> RemotePathFromPerson(const std::string& text) {
    CString path = CString::FromUtf8(text);
    path.Replace(u'/', u'\\');
    path.Trim();
    path.TrimLeft(u'\\');
    if (!IsLibraryPath(path)) return std::nullopt;
    return path;
}

int RunSetup(const SetupOptions& options) {
    for (const auto& [text, what] : {std::pair{options.host, "host"}, std::pair{options.root, "root folder"},
                                     std::pair{options.user, "user name"}}) {
        if (keptByLoginFile(text)) continue;
        std::cerr << "qxlib: the " << what << " holds characters that the login file cannot keep "
                     "(only codes up to 255, no control characters); nothing was written\n";
        return 1;
    }
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
        if (!keptByLoginFile(*password)) {
            std::cerr << "qxlib: the password holds characters that the login file cannot keep "
                         "(only codes up to 255, no control characters); nothing was written\n";
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
    TakenFiles taken(installFolder());
    taken.note(file, localCopyOf(file));
    taken.save();
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
    if (!connection->SubmitFile(local, file) || watch.warnings > 0) {
        std::cerr << "qxlib: " << shown(file) << " was not submitted, or the site's journal was not updated\n";
        return 1;
    }
    connection->ReleaseLock(file);
    CheckOutList(installFolder()).remove(file);
    TakenFiles taken(installFolder());
    taken.note(file, local);
    taken.save();
    std::cout << "submitted " << shown(file) << '\n';
    return 0;
}

int RunCancel(const CString& file) {
    auto connection = connect();
    if (!connection) return 1;
    CheckOutList(installFolder()).remove(file);
    CString holder;
    if (!connection->GetLockHolder(file, holder)) {
        std::cerr << "qxlib: " << shown(file) << " has no lock on the site; nothing was cancelled\n";
        return 1;
    }
    if (!holder.EqualsNoCase(GetHostId())) {
        std::cerr << "qxlib: the lock of " << shown(file) << " is held by " << shown(holder) << ", not by this host; it stays\n";
        return 1;
    }
    connection->CancelCheckOut(localCopyOf(file), RemoteParent(file));
    connection = connect();  // the cancel ends the session
    if (!connection || connection->GetLockHolder(file, holder)) {
        std::cerr << "qxlib: the lock of " << shown(file) << " could not be removed\n";
        return 1;
    }
    std::cout << "cancelled the check-out of " << shown(file) << '\n';
    return 0;
}

int RunDelete(const CString& path) {
    auto connection = connect();
    if (!connection) return 1;
    CString item = path;
    item.TrimRight(u'\\');
    const bool onSite = isFolderPath(path) ? connection->RemoteFolderExists(item) : connection->RemotePathExists(item);
    if (!onSite) {
        std::cerr << "qxlib: " << shown(path) << " is not on the site; nothing was deleted\n";
        return 1;
    }
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
    WarningWatch watch;
    if (!connection->SubmitFolderTree(RemoteParent(remote), remote, localFolder) || watch.warnings > 0) {
        std::cerr << "qxlib: " << shownLocal(localFolder) << " was not pushed whole: " << watch.warnings << " file(s) were refused\n";
        return 1;
    }
    std::cout << "pushed " << shownLocal(localFolder) << " to " << shown(remote) << "\\\n";
    return 0;
}

namespace {

// "k.dwg" beside which the site's copy is kept as "k (site copy).dwg".
CString besideName(const CString& local) {
    const int slash = local.ReverseFind(u'\\');
    const int dot = local.ReverseFind(u'.');
    if (dot <= slash + 1) return local + u" (site copy)";
    return local.Left(dot) + u" (site copy)" + local.Mid(dot);
}

bool sameBytes(const CString& a, const CString& b) {
    std::string first, second;
    return QxFs::ReadBytes(a, first) && QxFs::ReadBytes(b, second) && first == second;
}

// One sync: takes the files of the journal lines newer than this client's version, without ever replacing
// a person's work.
class Sync {
public:
    Sync(CMyFtpConnection& connection)
        : m_connection(connection), m_site(connection), m_checkOuts(installFolder()), m_taken(installFolder()),
          m_me(GetHostId()), m_atTerminal(::isatty(STDOUT_FILENO) == 1) {}

    int run();

private:
    void takeEntry(const STRUCT_FILE_INFO& entry);
    void takeFolder(const CString& siteFolder, const CString& journalFolder);
    // Takes one file. A file listed as checked out, locked by this host on the site, or changed locally since
    // this client last took it keeps the person's copy; the site's comes beside it.
    void takeFile(const CString& siteFile, const CString& journalPath);
    void say(const CString& text) const {
        if (m_atTerminal) std::cout << "[" << m_done << "/" << m_total << "] ";
        std::cout << shown(text) << '\n';
    }

    CMyFtpConnection& m_connection;
    SiteView m_site;
    CheckOutList m_checkOuts;
    TakenFiles m_taken;
    CString m_me;
    bool m_atTerminal;
    int m_failed = 0;
    int m_done = 0;
    int m_total = 0;
};

void Sync::takeFile(const CString& siteFile, const CString& journalPath) {
    if (!IsLibraryPath(journalPath)) {
        std::cerr << "qxlib: passed over the site's file \"" << shown(siteFile) << "\"\n";
        return;
    }
    const CString local = localCopyOf(journalPath);
    CString holder;
    const bool keepLocal = QxFs::Exists(local) &&
                           (m_checkOuts.contains(journalPath) || !m_taken.unchangedSinceTaken(journalPath, local) ||
                            (m_site.listsLockOf(siteFile) && m_connection.GetLockHolder(siteFile, holder) &&
                             holder.EqualsNoCase(m_me)));
    if (!keepLocal) {
        if (!m_connection.DownloadFile(siteFile, local)) {
            say(u"could not take " + journalPath);
            ++m_failed;
            return;
        }
        m_taken.note(journalPath, local);
        say(u"took " + journalPath);
        return;
    }
    const CString beside = besideName(local);
    if (!m_connection.DownloadFile(siteFile, beside)) {
        say(u"could not take " + journalPath);
        ++m_failed;
        return;
    }
    if (sameBytes(local, beside)) {
        QxFs::DeleteFile(beside);
        m_taken.note(journalPath, local);
        say(u"took " + journalPath + u" (the local copy is the same)");
        return;
    }
    say(u"kept your copy of " + journalPath + u"; the site's copy is " + besideName(journalPath));
}

void Sync::takeFolder(const CString& siteFolder, const CString& journalFolder) {
    QxFs::MakeFolders(localCopyOf(journalFolder));
    const SiteView::Listing* listing = m_site.list(siteFolder);
    if (!listing) {
        say(u"could not list " + siteFolder);
        ++m_failed;
        return;
    }
    const SiteView::Listing copy = *listing;
    for (const CString& file : copy.files) {
        if (IsProtocolFile(file)) continue;
        takeFile(file, JoinRemote(journalFolder, RemoteName(file)));
    }
    for (const CString& folder : copy.folders) takeFolder(folder, JoinRemote(journalFolder, RemoteName(folder)));
}

void Sync::takeEntry(const STRUCT_FILE_INFO& entry) {
    if (!IsLibraryPath(entry.m_strPath)) {
        std::cerr << "qxlib: passed over the journal path \"" << shown(entry.m_strPath) << "\"\n";
        return;
    }
    if (entry.m_strOperation == u"DEL") {
        // What a person has locally is never removed for them.
        say(u"removed on the site: " + entry.m_strPath + u" (the local copy stays)");
        return;
    }
    const bool folder = isFolderPath(entry.m_strPath);
    CString sitePath;
    switch (m_site.resolve(entry.m_strPath, folder, sitePath)) {
    case SiteView::Found::ListingFailed:
        // A listing that fails says nothing about the file: the client stays behind.
        say(u"could not list the site for " + entry.m_strPath);
        ++m_failed;
        return;
    case SiteView::Found::No:
        // A later change may have renamed or removed it.
        say(u"no longer on the site: " + entry.m_strPath);
        return;
    case SiteView::Found::Yes:
        break;
    }
    CString item = entry.m_strPath;
    item.TrimRight(u'\\');
    if (entry.m_strOperation == u"REN") takeFolder(sitePath, item);
    else if (folder) say((QxFs::MakeFolders(localCopyOf(item)) ? u"took " : u"could not take ") + entry.m_strPath);
    else takeFile(sitePath, item);
}

int Sync::run() {
    const CString journalCopy = m_connection.GetTempFolder() + u"QxLibJournal.xml";
    QxFs::DeleteFile(journalCopy);
    if (!m_connection.DownloadFile(u"Server.xml", journalCopy)) {
        std::cerr << "qxlib: the site has no journal to take\n";
        return 1;
    }
    CString clientLine;
    ReadFirstLine(installFolder() + u"Client.xml", clientLine);
    const CString clientStamp = StampOfVersionLine(clientLine.Trim());
    COperateVersionFile journal(journalCopy);
    journal.Load();
    CString journalLine;
    ReadFirstLine(journalCopy, journalLine);
    journalLine.Trim();
    QxFs::DeleteFile(journalCopy);

    const auto& entries = journal.GetEntries();
    std::vector<const STRUCT_FILE_INFO*> newer;
    // Oldest first, so that a folder is made before the files that came into it.
    for (int i = entries.GetUpperBound(); i >= 0; --i)
        if (clientStamp.IsEmpty() || entries[i].m_strVersion.CompareNoCase(clientStamp) > 0) newer.push_back(&entries[i]);
    m_total = static_cast<int>(newer.size());
    for (const STRUCT_FILE_INFO* entry : newer) {
        ++m_done;
        takeEntry(*entry);
    }
    m_taken.save();
    if (m_failed > 0) {
        std::cerr << "qxlib: " << m_failed << " item(s) could not be taken; the client version stays behind\n";
        return 1;
    }
    // The client takes the version of the journal it has just worked through: a change that another client
    // made since then is still to come.
    if (!IsVersionLine(journalLine) || !WriteLegacyText(installFolder() + u"Client.xml", journalLine) ||
        !WriteLegacyText(installFolder() + u"Client_PartLib.xml", journalLine)) {
        std::cerr << "qxlib: the client version could not be brought to the site's\n";
        return 1;
    }
    std::cout << "in step with the site's journal\n";
    return 0;
}

} // namespace

int RunSync() {
    auto connection = connect();
    if (!connection) return 1;
    return Sync(*connection).run();
}
