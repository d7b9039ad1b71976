// What the library repository takes from a site and from its own files: the version journal, the lock
// files, the client version file, the login file and the MLSD and LIST listings. A loopback FTP site in the
// process serves the input; the client syncs with it (qxlib sync), downloads a folder, checks a file out
// and compares versions, and reads and rewrites a journal and a login file of its own.
//
// The input is six parts cut at zero bytes: the journal, Client.xml, the listing, the lock files' content,
// a login file, and a byte of choices (bit 0: the site has no MLSD). No path taken from any of them may
// leave the install folder. The install folder lies eight folders below the scratch folder, whatever else
// appears in the scratch folder came from outside it; the process writes nowhere else at all, as
// everything but the scratch folder and libFuzzer's own folders is read-only in its mount namespace.
#include "FakeFtpSite.h"
#include "FuzzSupport.h"
#include "WriteJail.h"

#include "apps/qxlib/LibraryCommands.h"
#include "platform/InstallPath.h"
#include "repository/FtpLoginFile.h"
#include "repository/MyFtpConnection.h"
#include "repository/VersionFile.h"
#include "support/FileSystem.h"
#include "tests/common/FtpTestTimings.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

enum Part { kJournal, kClientVersion, kListing, kLock, kLoginFile, kChoices, kPartCount };

const std::string kDepth = "j/j/j/j/j/j/j/j";
const std::string kInstall = kDepth + "/install";

fuzz::FakeFtpSite& site() {
    static fuzz::FakeFtpSite instance;
    return instance;
}

CString installFolder() {
    CString relative(kInstall.c_str());
    relative.Replace(u'/', u'\\');
    return fuzz::ScratchLogicFolder() + relative + u"\\";
}

// The login file of the install folder, for the loopback site, passive, anonymous, at the site's top.
void writeLoginFile() {
    FtpLoginLines lines;
    lines[kLoginHost] = u"127.0.0.1";
    lines[kLoginPort] = CString(std::to_string(site().port()).c_str());
    lines[kLoginAnonymous] = u"1";
    lines[kLoginPassive] = u"1";
    const CString path = fuzz::WriteScratchFile(kInstall + "/LocalData/QxFTPLoginInfo.sys", "");
    WriteLoginInfo(path, lines);
}

// A login file as a person's disk may hold it: read, and each line scrambled back as it was.
void readLoginFile(std::string_view bytes) {
    FtpLoginLines lines;
    if (!ReadLoginInfo(fuzz::WriteScratchFile("login.sys", bytes), lines)) return;
    for (const CString& line : lines) {
        bool plain = true;
        for (const char16_t ch : line.str()) plain = plain && ch <= 0xff;
        if (!plain) continue;
        CString scrambled = line;
        EncodeText(scrambled);
        DecodeText(scrambled);
        fuzz::Require(scrambled == line, "a login line comes back from scrambling as it was");
    }
}

// A journal of the client's own, read, rewritten with its first paths and read again.
void rewriteJournal(std::string_view bytes) {
    const CString path = fuzz::WriteScratchFile(kInstall + "/TempFTP/Own.xml", bytes);
    COperateVersionFile journal(path);
    if (!journal.Load()) return;
    CStringArray paths, operations;
    for (int i = 0; i < journal.GetEntries().GetSize() && i < 3; ++i) {
        paths.Add(journal.GetEntries()[i].m_strPath);
        operations.Add(u"MOD");
    }
    if (paths.IsEmpty()) return;
    journal.UpdateEntries(paths, operations);
    COperateVersionFile again(path);
    fuzz::Require(again.Load(), "a rewritten journal reads again");
    fuzz::Require(again.GetEntries().GetSize() >= paths.GetSize(), "a rewritten journal keeps the paths it was given");
}

void talkToTheSite() {
    RunSync();
    CMyFtpConnection connection(installFolder() + u"LocalData\\QxFTPLoginInfo.sys");
    connection.SetTimings(LoopbackFtpTimings(3000, 5000, 1, 1, 1));
    if (!connection.ConnectServer()) return;
    connection.DownloadFolder(u"Lib", installFolder() + u"Lib");
    CString holder;
    connection.GetLockHolder(u"Lib\\a.dwg", holder);
    connection.IsCheckOutLost(u"Lib\\a.dwg");
    connection.CheckOutFile(installFolder() + u"Work\\a.dwg", u"Lib", u"a.dwg");
    connection.CheckClientVersion();
    bool mainLibChanged = false;
    connection.CheckServerVersion(mainLibChanged);
}

// Whatever lies in the scratch folder outside the chain of folders down to the install folder.
void requireNothingOutsideTheInstallFolder() {
    const fs::path scratch = fuzz::ScratchFolder();
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator(scratch, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec)) {
        const std::string relative = fs::relative(it->path(), scratch, ec).string();
        if (relative == "login.sys" || relative.rfind(kInstall + "/", 0) == 0 || relative == kInstall) continue;
        if (kDepth.rfind(relative, 0) == 0 && it->is_directory()) continue;
        std::fprintf(stderr, "\n==fuzz== escaped: %s\n", relative.c_str());
        fuzz::Require(false, "no path from the site or the client's files leaves the install folder");
    }
}

std::stringstream g_discarded;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // qxlib tells its progress on the standard streams; libFuzzer reports through stdio.
    std::cout.rdbuf(g_discarded.rdbuf());
    std::cerr.rdbuf(g_discarded.rdbuf());
    std::vector<std::string> writable = fuzz::FoldersLibFuzzerWrites(*argc, *argv);
    writable.push_back(fuzz::ScratchFolder());
    if (!fuzz::WriteOnlyInto(writable))
        std::fprintf(stderr, "fuzz_repository: no mount namespace (not root): a path that escapes is only seen "
                             "below the scratch folder\n");
    site();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto parts = fuzz::SplitSections(data, size, kPartCount);
    g_discarded.str({});
    for (const char* folder : {"j", "login.sys"}) fs::remove_all(fs::path(fuzz::ScratchFolder()) / folder);
    fuzz::ClearScratchFolder(kInstall);
    SetCorvaneInstallDirOverride(installFolder());
    writeLoginFile();
    fuzz::WriteScratchFile(kInstall + "/Client.xml", parts[kClientVersion]);
    fuzz::WriteScratchFile(kInstall + "/Client_PartLib.xml", parts[kClientVersion]);

    const bool noMlsd = !parts[kChoices].empty() && (parts[kChoices][0] & 1);
    site().serve({std::string(parts[kJournal]), std::string(parts[kListing]), std::string(parts[kLock]), !noMlsd});
    talkToTheSite();
    rewriteJournal(parts[kJournal]);
    readLoginFile(parts[kLoginFile]);
    requireNothingOutsideTheInstallFolder();
    return 0;
}
