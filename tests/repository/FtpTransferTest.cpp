// The FTP connection against a real server: login, root folder, transfers with one reconnect, staging.
#include "RepositoryFixture.h"

#include "common/LoopbackSockets.h"
#include "repository/FtpTransport.h"
#include "repository/HostId.h"
#include "support/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FtpTransfer : public RepositoryFixture {};

// Listings with MLSD, and with LIST on a server that knows no MLSD.
class ListingServers : public RepositoryFixture, public ::testing::WithParamInterface<std::vector<std::string>> {};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutMlsd, ListingServers,
                         ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"--no-mlsd"}));

FtpTimings oneSecondStalls() {
    FtpTimings timings = shortTimings();
    timings.stallTimeoutMs = 1000;
    return timings;
}

} // namespace

TEST(FtpLoginFile, ScramblesEachCharacterIntoTwoLettersAndBack) {
    CString text = u"Ab1";
    EncodeText(text);
    EXPECT_EQ(text, u"ebgcdb");
    DecodeText(text);
    EXPECT_EQ(text, u"Ab1");

    CString wide = u"\u4e2dx";  // a character above 255 keeps only its low byte
    EncodeText(wide);
    DecodeText(wide);
    EXPECT_EQ(wide, CString(u"\u002dx"));
}

TEST(FtpLoginFile, NeedsElevenLinesAndAnExistingFileThatStaysPrivate) {
    TempFolder dir;
    const CString path = dir.logic() + u"login.sys";
    FtpLoginLines lines;
    lines[kLoginHost] = u"ftp.example";
    lines[kLoginPassword] = u"pa ss";
    lines[kLoginPassive] = u"1";
    EXPECT_FALSE(WriteLoginInfo(path, lines));  // the file must exist already

    dir.writeFile("login.sys", "");
    ::chmod((dir.native() + "/login.sys").c_str(), 0644);
    ASSERT_TRUE(WriteLoginInfo(path, lines));
    const std::string bytes = dir.readFile("login.sys");
    EXPECT_EQ(bytes.find_first_not_of("abcdefghijklmnop\n"), std::string::npos);
    EXPECT_NE(bytes.back(), '\n');
    struct stat info{};
    ::stat((dir.native() + "/login.sys").c_str(), &info);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    FtpLoginLines read;
    ASSERT_TRUE(ReadLoginInfo(path, read));
    EXPECT_EQ(read, lines);

    dir.writeFile("short.sys", bytes.substr(0, bytes.rfind('\n')));  // ten lines
    EXPECT_FALSE(ReadLoginInfo(dir.logic() + u"short.sys", read));
    EXPECT_FALSE(ReadLoginInfo(dir.logic() + u"missing.sys", read));
}

// One site: the root folder of the login file, names that URLs would take apart, a failed upload that says
// which file, a stale part library lock, and a root folder that is missing.
TEST_F(FtpTransfer, ConnectsToTheRootFolderAndTransfersNamesAsTheyAreAndSaysWhatFailed) {
    site.writeFile("lib/a.txt", "one");
    writeLogin({u"lib"});
    auto connected = client();
    EXPECT_TRUE(connected->DownloadFile(u"a.txt", install.logic() + u"got\\deep\\a.txt"));
    EXPECT_EQ(install.readFile("got/deep/a.txt"), "one");  // missing local folders are made
    install.writeFile("src.txt", "payload");
    for (const char16_t* name : {u"#.txt", u"a b%20c.dwg", u"原图?.dwg"}) {
        EXPECT_TRUE(connected->UploadFile(install.logic() + u"src.txt", name)) << CString(name);
        EXPECT_TRUE(site.exists("lib/" + CString(name).ToUtf8())) << CString(name);
        EXPECT_TRUE(connected->RemotePathExists(name));
    }
    EXPECT_FALSE(connected->RemotePathExists(u"#"));
    EXPECT_FALSE(connected->UploadFile(install.logic() + u"src.txt", u"nosuch\\a.dwg"));
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, u"文件 a.dwg 上传失败，请确认是否被其它客户端用户调用！");
    EXPECT_EQ(output.boxes[0].style, unsigned(MB_ICONWARNING));
    // A part library lock that can be removed was stale.
    EXPECT_FALSE(connected->IsPartLibInUse());
    site.writeFile("lib/Part2lib/Part2Lib.ldb", "x");
    EXPECT_FALSE(connected->IsPartLibInUse());
    EXPECT_FALSE(site.exists("lib/Part2lib/Part2Lib.ldb"));

    writeLogin({u"nosuch"});
    auto lost = connection();
    EXPECT_FALSE(lost->ConnectServer());
    ASSERT_EQ(output.boxes.size(), 2u);
    EXPECT_EQ(output.boxes[1].text, u"设置站点当前路径失败!\n可能原因:FTP站点中路径名nosuch不存在");
    EXPECT_EQ(output.boxes[1].caption, u"Corvane");
    EXPECT_FALSE(lost->IsConnected());
}

TEST_F(FtpTransfer, ASiteThatIsDownOrNeverGreetsFailsTheConnectWithTheReasonOnTheCommandLine) {
    serve();
    server->stop();
    auto down = connection();
    EXPECT_FALSE(down->ConnectServer());
    EXPECT_TRUE(output.printed.StartsWith(u"\n")) << output.printed;
    EXPECT_GT(output.printed.GetLength(), 2);
    EXPECT_FALSE(down->DownloadFile(u"a.txt", install.logic() + u"a.txt"));
    EXPECT_TRUE(output.boxes.empty());  // a download fails silently

    // A socket that listens and never answers: the connection is made by the kernel, the greeting never comes.
    int port = 0;
    const int listener = loopback::Listen(port);
    ASSERT_GE(listener, 0);
    writeLogin({u"", port});
    auto silent = connection(oneSecondStalls());
    EXPECT_FALSE(silent->ConnectServer());
    EXPECT_FALSE(silent->IsConnected());
    ::close(listener);
}

// The first download of a.dwg after each start is broken off, as by a site going down mid-transfer, and
// the first upload of b.dwg is refused: libcurl does not try again by itself, the client must.
TEST_F(FtpTransfer, DownloadsAgainAfterTheServerWasRestarted) {
    serve({"--drop-first-retr", "a.dwg", "--fail-first-stor", "b.dwg"});
    site.writeFile("a.dwg", "first");
    auto connected = client();
    ASSERT_TRUE(connected->DownloadFile(u"a.dwg", install.logic() + u"a.dwg"));
    EXPECT_EQ(install.readFile("a.dwg"), "first");
    server->restart();
    site.writeFile("a.dwg", "second");
    EXPECT_TRUE(connected->DownloadFile(u" a.dwg ", install.logic() + u"a.dwg"));
    EXPECT_EQ(install.readFile("a.dwg"), "second");
    install.writeFile("b.dwg", "b");
    EXPECT_TRUE(connected->UploadFile(install.logic() + u"b.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "b");
}

TEST_P(ListingServers, ListsFindsAndMakesFolders) {
    serve(GetParam());
    site.writeFile("lib/a.DWG", "a");
    site.writeFile("lib/sub/b.dwg", "b");
    auto connected = client();

    CStringArray folders, files;
    ASSERT_TRUE(connected->ListRemoteFolder(u"lib", folders, files));
    EXPECT_EQ(folders, CStringArray{u"lib\\sub"});
    EXPECT_EQ(files, CStringArray{u"lib\\a.DWG"});
    EXPECT_TRUE(connected->RemoteFileExistsInFolder(u"lib", u"a.dwg"));  // found by its upper-case extension
    EXPECT_FALSE(connected->RemoteFileExistsInFolder(u"lib", u"b.dwg"));
    EXPECT_TRUE(connected->RemoteFolderExists(u"lib\\SUB\\"));
    EXPECT_FALSE(connected->RemoteFolderExists(u"lib\\a.DWG"));

    EXPECT_TRUE(connected->CreateRemoteFolders(u"new\\deeper\\deepest"));
    EXPECT_TRUE(site.exists("new/deeper/deepest"));
    EXPECT_FALSE(connected->CreateRemoteFolders(u""));

    EXPECT_TRUE(connected->DownloadFolder(u"lib", install.logic() + u"copy"));
    EXPECT_EQ(install.readFile("copy/sub/b.dwg"), "b");
    EXPECT_EQ(install.readFile("copy/a.DWG"), "a");
}

TEST_F(FtpTransfer, StagingReplacesAFileThroughAStagingFileInItsOwnFolderOnlyWithFtpBg) {
    serve({"--refuse-stor", "/#*"});  // staging files at the site's root are refused
    install.writeFile("LocalData/Ftp.bg", "");
    site.writeFile("lib/a.dwg", "old");
    install.writeFile("new.dwg", "new");
    auto staging = client();
    EXPECT_TRUE(staging->UploadFile(install.logic() + u"new.dwg", u"lib\\a.dwg"));
    EXPECT_EQ(site.readFile("lib/a.dwg"), "new");
    EXPECT_FALSE(staging->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));  // staged at the root: refused
    for (const auto& entry : std::filesystem::recursive_directory_iterator(site.native()))
        EXPECT_NE(entry.path().filename().string()[0], '#') << entry.path();

    QxFs::DeleteFile(install.logic() + u"LocalData\\Ftp.bg");
    EXPECT_TRUE(client()->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));  // without Ftp.bg: put straight
    EXPECT_EQ(site.readFile("a.dwg"), "new");
}

// Downloads that go wrong on the site's side keep the local file as it was and leave nothing beside it.
TEST_F(FtpTransfer, ADownloadDroppedStalledOrEndlessFailsAndWritesNothing) {
    // Dropped mid-transfer; stalled after the first bytes; announced as nothing and then 64 MiB sent.
    serve({"--drop-retr", "big.dwg", "--stall-retr", "hung.dwg", "--endless-retr", "endless.dwg"});
    site.writeFile("big.dwg", std::string(100000, 'x'));
    site.writeFile("hung.dwg", "never sent");
    site.writeFile("endless.dwg", "small");
    site.writeFile("fine.dwg", "fine");
    FtpTimings timings = oneSecondStalls();
    timings.unannouncedDownloadLimit = 1 << 20;
    auto connected = client(timings);
    for (const char16_t* name : {u"big.dwg", u"hung.dwg", u"endless.dwg"}) {
        install.writeFile("mine", "mine");
        EXPECT_FALSE(connected->DownloadFile(name, install.logic() + u"mine")) << CString(name);
        EXPECT_EQ(install.readFile("mine"), "mine") << CString(name);
        size_t files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(install.native())) files += entry.is_regular_file();
        EXPECT_EQ(files, 1u) << CString(name);  // no temporary file is left beside the target
        EXPECT_TRUE(connected->IsConnected());  // the reconnect worked; only the file failed
    }
    EXPECT_TRUE(connected->DownloadFile(u"fine.dwg", install.logic() + u"fine.dwg"));
    EXPECT_EQ(install.readFile("fine.dwg"), "fine");
}

// Knows no passive mode: only a client that keeps to the login file's passive flag "0" gets through.
TEST_F(FtpTransfer, LogsInAsTheUserAndKeepsToThePassiveFlag) {
    serve({"--user", "ann", "--password", "s3cret", "--refuse-pasv"});
    site.writeFile("a.dwg", "a");
    install.writeFile("b.dwg", "b");
    for (const bool passive : {false, true}) {
        writeLogin({u"", 0, u"0", u"ann", u"s3cret", passive ? u"1" : u"0"});
        auto connected = client();
        EXPECT_EQ(connected->DownloadFile(u"a.dwg", install.logic() + u"a.dwg"), !passive) << passive;
        EXPECT_EQ(connected->RemotePathExists(u"a.dwg"), !passive) << passive;
    }
    writeLogin({u"", 0, u"0", u"ann", u"s3cret", u"0"});
    EXPECT_TRUE(client()->UploadFile(install.logic() + u"b.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "b");

    writeLogin({u"", 0, u"0", u"ann", u"wrong", u"1"});
    auto refused = connection();
    EXPECT_FALSE(refused->ConnectServer());
    // The anonymous flag leaves user and password out: this site has no anonymous login.
    writeLogin({u"", 0, u"1", u"ann", u"s3cret", u"1"});
    EXPECT_FALSE(refused->ConnectServer());
}

TEST(HostIdentity, IsTheAddressAndNameOfThisMachineUnlessChosen) {
    ::unsetenv("CORVANE_HOST_ID");
    const std::string id = GetHostId().ToUtf8();
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    ASSERT_GE(id.size(), std::string(name).size() + 2);
    EXPECT_EQ(id.substr(id.size() - std::string(name).size() - 2), "(" + std::string(name) + ")");
    const std::string address = id.substr(0, id.find('('));
    EXPECT_TRUE(address.empty() || std::count(address.begin(), address.end(), '.') == 3) << id;

    ::setenv("CORVANE_HOST_ID", "10.1.2.3(desk)", 1);
    EXPECT_EQ(GetHostId(), u"10.1.2.3(desk)");
    ::unsetenv("CORVANE_HOST_ID");
}
