// qxcad: the host program. It loads the QxHMInterFace module, runs the commands given on its command line
// (or typed at its prompt), shows what the module prints and asks, and unloads the module at the end.
#include "CommandRunner.h"
#include "ModuleLoader.h"
#include "TerminalDialogs.h"
#include "platform/InstallPath.h"
#include "platform/host/Prompts.h"
#include "project/folders/TemplateDrawing.h"
#include "support/FileSystem.h"
#include "support/PrintableText.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace {

// A fresh machine has no install folder yet; make the folders the application expects, as its installer does.
void prepareInstallFolder() {
    const CString install = GetCorvaneLocalInstallPath();
    if (install.IsEmpty()) {
        std::cerr << "qxcad: no install folder can be named (set CORVANE_HOME or use --install-dir)\n";
        return;
    }
    const bool existed = QxFs::IsFolder(install);
    for (const char16_t* sub : {u"", u"Data", u"Temp", u"LocalData", u"Support\\TEMPLATE", u"Part2lib", u"My Projects"})
        QxFs::MakeFolders(install + sub);
    LayOutTemplateDrawing(install);
    const CString shown = QxPrintable(QxFs::ToNativeText(install));
    if (!QxFs::IsFolder(install)) std::cerr << "qxcad: the install folder " << shown << " cannot be made\n";
    else if (!existed) std::cerr << "qxcad: made the install folder " << shown << '\n';
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"qxcad: runs the QxHMInterFace commands as the CAD host would"};
    app.set_version_flag("--version", std::string("qxcad ") + QX_VERSION);
    std::string installDir;
    std::string modulePath;
    bool yes = false;
    bool no = false;
    std::vector<std::string> commands;
    app.add_option("--install-dir", installDir, "the Corvane install folder (default: $CORVANE_HOME or ~/.local/share/corvane)");
    app.add_option("--module", modulePath, "the module to load (default: libQxHMInterFace.so beside qxcad)");
    auto* yesFlag = app.add_flag("--yes", yes, "answer every yes/no question with yes");
    app.add_flag("--no", no, "answer every yes/no question with no")->excludes(yesFlag);
    app.add_option("commands", commands, "commands to run in order; without any, qxcad reads them at a prompt");
    CLI11_PARSE(app, argc, argv);

    if (!installDir.empty()) SetCorvaneInstallDirOverride(QxFs::FromNative(installDir));
    if (yes) SetConsoleYesNoAnswer(true);
    if (no) SetConsoleYesNoAnswer(false);
    prepareInstallFolder();
    InstallTerminalDialogs();

    if (modulePath.empty()) modulePath = DefaultModulePath(argv[0]);
    ModuleLoader module(modulePath);
    if (!module.loaded()) {
        std::cerr << "qxcad: the module " << modulePath << " does not load: " << module.error() << '\n';
        return 2;
    }

    CommandRunner runner;
    bool allRan = true;
    if (commands.empty()) {
        allRan = runner.runPrompt();
    } else {
        for (const std::string& command : commands) allRan = runner.runLine(CString::FromUtf8(command)) && allRan;
    }
    return allRan ? 0 : 1;
}
