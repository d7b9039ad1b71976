// qxlib: a person's client of the library repository on an FTP site. It keeps the install folder's
// libraries in step with the site through the site's journal, and checks files out and in under locks.
#include "LibraryCommands.h"

#include "platform/InstallPath.h"
#include "platform/host/Prompts.h"
#include "support/FileSystem.h"
#include "support/PrintableText.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace {

// Runs a command on a remote path that must be plain; 2 when it is not.
template <typename Command>
int onRemotePath(const std::string& text, Command command) {
    const auto path = RemotePathFromPerson(text);
    if (!path) {
        std::cerr << "qxlib: \"" << QxPrintable(CString::FromUtf8(text)) << "\" is not a path inside the library\n";
        return 2;
    }
    return command(*path);
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"qxlib: keeps the Corvane libraries in step with the library site over FTP"};
    app.require_subcommand(1);
    std::string installDir;
    bool yes = false;
    bool no = false;
    app.add_option("--install-dir", installDir, "the Corvane install folder (default: $CORVANE_HOME or ~/.local/share/corvane)");
    auto* yesFlag = app.add_flag("--yes", yes, "answer every yes/no question with yes");
    app.add_flag("--no", no, "answer every yes/no question with no")->excludes(yesFlag);

    SetupOptions setup;
    std::string host, root, user;
    auto* setupCommand = app.add_subcommand("setup", "write the login file of the library site");
    setupCommand->add_option("host", host, "the site's host name or address")->required();
    setupCommand->add_option("port", setup.port, "the site's port")->required()->check(CLI::Range(1, 65535));
    setupCommand->add_option("root", root, "the library's folder on the site (\"/\" for the top)")->required();
    setupCommand->add_option("--user", user, "log in as this user (the password is asked); anonymous without");
    setupCommand->add_flag("--passive", setup.passive, "use passive mode");
    setupCommand->add_flag("--staging", setup.staging, "replace files on the site through a staging file (\"#HOST-RANDOM.txt\")");

    auto* statusCommand = app.add_subcommand("status", "is this client behind the journal, who holds its checked-out files");
    std::string file, oldPath, newPath, localFolder;
    auto* checkoutCommand = app.add_subcommand("checkout", "fetch a file and lock it");
    checkoutCommand->add_option("file", file, "the file's path on the site")->required();
    auto* submitCommand = app.add_subcommand("submit", "send a file back (or a new one), with its journal line, and unlock it");
    submitCommand->add_option("file", file, "the file's path on the site")->required();
    auto* cancelCommand = app.add_subcommand("cancel", "give up a check-out: remove this host's lock");
    cancelCommand->add_option("file", file, "the file's path on the site")->required();
    auto* deleteCommand = app.add_subcommand("delete", "remove a file, or a folder (trailing \\) with all in it");
    deleteCommand->add_option("path", file, "the path on the site")->required();
    auto* mkdirCommand = app.add_subcommand("mkdir", "make a folder on the site");
    mkdirCommand->add_option("path", file, "the folder's path on the site")->required();
    auto* renameCommand = app.add_subcommand("rename", "rename a file, or a folder (trailing \\)");
    renameCommand->add_option("old", oldPath, "the present path")->required();
    renameCommand->add_option("new", newPath, "the new path")->required();
    auto* pushCommand = app.add_subcommand("push-tree", "send a local folder's drawings and project files (.dwg, .itm, .prj)");
    pushCommand->add_option("local", localFolder, "the local folder")->required();
    pushCommand->add_option("remote", newPath, "the folder on the site")->required();
    auto* syncCommand = app.add_subcommand("sync", "take what the journal changed since this client's version");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        return status == 0 ? 0 : 2;
    }

    if (!installDir.empty()) SetCorvaneInstallDirOverride(QxFs::FromNative(installDir));
    if (CString(GetInstallPath_CV()).IsEmpty()) {
        std::cerr << "qxlib: no install folder can be named (set CORVANE_HOME or use --install-dir)\n";
        return 2;
    }
    if (yes) SetConsoleYesNoAnswer(true);
    if (no) SetConsoleYesNoAnswer(false);

    if (setupCommand->parsed()) {
        setup.host = CString::FromUtf8(host);
        setup.user = CString::FromUtf8(user);
        setup.root = root == "/" ? CString() : CString::FromUtf8(root);
        setup.root.Replace(u'/', u'\\');
        setup.root.Trim(u'\\');
        return RunSetup(setup);
    }
    if (statusCommand->parsed()) return RunStatus();
    if (checkoutCommand->parsed()) return onRemotePath(file, RunCheckOut);
    if (submitCommand->parsed()) return onRemotePath(file, RunSubmit);
    if (cancelCommand->parsed()) return onRemotePath(file, RunCancel);
    if (deleteCommand->parsed()) return onRemotePath(file, RunDelete);
    if (mkdirCommand->parsed()) return onRemotePath(file, RunMakeFolder);
    if (renameCommand->parsed()) {
        const auto target = RemotePathFromPerson(newPath);
        if (!target) {
            std::cerr << "qxlib: \"" << QxPrintable(CString::FromUtf8(newPath)) << "\" is not a path inside the library\n";
            return 2;
        }
        return onRemotePath(oldPath, [&](const CString& path) { return RunRename(path, *target); });
    }
    if (pushCommand->parsed())
        return onRemotePath(newPath, [&](const CString& remote) { return RunPushTree(QxFs::FromNative(localFolder), remote); });
    if (syncCommand->parsed()) return RunSync();
    return 2;
}
