// The FTP connection against a real server: login, root folder, transfers with one reconnect, staging.
#include "RepositoryFixture.h"

#include "repository/FtpTransport.h"
#include "repository/HostId.h"
#include "support/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <unistd.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace {

class FtpTransfer : public RepositoryFixture {};

class DroppingServer : public RepositoryFixture {
protected:
    DroppingServer() : RepositoryFixture({"--drop-retr", "big.dwg"}) {}
};

// The first download of a.dwg after each start is broken off, as by a site going down mid-transfer, and
// the first upload of b.dwg is refused: libcurl does not try again by itself, the client must.
class RestartingServer : public RepositoryFixture {
protected:
    RestartingServer() : RepositoryFixture({"--drop-first-retr", "a.dwg", "--fail-first-stor", "b.dwg"}) {}
};

// Refuses staging files at the site's root: a file staged anywhere but in its own folder is refused.
class StagingOnlyInFolders : public RepositoryFixture {
protected:
    StagingOnlyInFolders() : RepositoryFixture({"--refuse-stor", "/#*"}) {}
};

// Answers MLSD and SIZE of endless.dwg with nothing and then streams 64 MiB.
class EndlessServer : public RepositoryFixture {
protected:
    EndlessServer() : RepositoryFixture({"--endless-retr", "endless.dwg"}) {}
};

// Listings with MLSD, and with LIST on a server that knows no MLSD.
class ListingServers : public RepositoryFixture, public ::testing::WithParamInterface<std::vector<std::string>> {
protected:
    ListingServers() : RepositoryFixture(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutMlsd, ListingServers,
                         ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"--no-mlsd"}));

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

TEST_F(FtpTransfer, ConnectsToTheRootFolderAndTellsWhenItIsMissing) {
    site.writeFile("lib/a.txt", "one");
    writeLogin(u"lib");
    auto connection = client();
    EXPECT_TRUE(connection->DownloadFile(u"a.txt", install.logic() + u"got\\deep\\a.txt"));
    EXPECT_EQ(install.readFile("got/deep/a.txt"), "one");  // missing local folders are made

    writeLogin(u"nosuch");
    CMyFtpConnection lost;
    lost.SetTimings(shortTimings());
    EXPECT_FALSE(lost.ConnectServer());
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, u"设置站点当前路径失败!\n可能原因:FTP站点中路径名nosuch不存在");
    EXPECT_EQ(output.boxes[0].caption, u"Corvane");
    EXPECT_FALSE(lost.IsConnected());
}

TEST_F(FtpTransfer, ASiteThatIsDownFailsTheConnectWithTheReasonOnTheCommandLine) {
    server->stop();
    CMyFtpConnection connection;
    connection.SetTimings(shortTimings());
    EXPECT_FALSE(connection.ConnectServer());
    EXPECT_TRUE(output.printed.StartsWith(u"\n")) << output.printed;
    EXPECT_GT(output.printed.GetLength(), 2);
    EXPECT_FALSE(connection.DownloadFile(u"a.txt", install.logic() + u"a.txt"));
    EXPECT_TRUE(output.boxes.empty());  // a download fails silently
}

TEST_F(RestartingServer, DownloadsAgainAfterTheServerWasRestarted) {
    site.writeFile("a.dwg", "first");
    auto connection = client();
    ASSERT_TRUE(connection->DownloadFile(u"a.dwg", install.logic() + u"a.dwg"));
    EXPECT_EQ(install.readFile("a.dwg"), "first");
    server->restart();
    site.writeFile("a.dwg", "second");
    EXPECT_TRUE(connection->DownloadFile(u" a.dwg ", install.logic() + u"a.dwg"));
    EXPECT_EQ(install.readFile("a.dwg"), "second");
    install.writeFile("b.dwg", "b");
    EXPECT_TRUE(connection->UploadFile(install.logic() + u"b.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "b");
}

TEST_F(FtpTransfer, NamesThatAreNotPlainInUrlsTravelAsTheyAre) {
    auto connection = client();
    install.writeFile("src.txt", "payload");
    for (const char16_t* name : {u"#.txt", u"a b%20c.dwg", u"原图?.dwg"}) {
        EXPECT_TRUE(connection->UploadFile(install.logic() + u"src.txt", name)) << CString(name);
        EXPECT_TRUE(site.exists(CString(name).ToUtf8())) << CString(name);
        EXPECT_TRUE(connection->RemotePathExists(name));
    }
    EXPECT_FALSE(connection->RemotePathExists(u"#"));
}

TEST_P(ListingServers, ListsFindsAndMakesFolders) {
    site.writeFile("lib/a.DWG", "a");
    site.writeFile("lib/sub/b.dwg", "b");
    auto connection = client();

    CStringArray folders, files;
    ASSERT_TRUE(connection->ListRemoteFolder(u"lib", folders, files));
    EXPECT_EQ(folders, CStringArray{u"lib\\sub"});
    EXPECT_EQ(files, CStringArray{u"lib\\a.DWG"});
    EXPECT_TRUE(connection->RemoteFileExistsInFolder(u"lib", u"a.dwg"));  // found by its upper-case extension
    EXPECT_FALSE(connection->RemoteFileExistsInFolder(u"lib", u"b.dwg"));
    EXPECT_TRUE(connection->RemoteFolderExists(u"lib\\SUB\\"));
    EXPECT_FALSE(connection->RemoteFolderExists(u"lib\\a.DWG"));

    EXPECT_TRUE(connection->CreateRemoteFolders(u"new\\deeper\\deepest"));
    EXPECT_TRUE(site.exists("new/deeper/deepest"));
    EXPECT_FALSE(connection->CreateRemoteFolders(u""));

    EXPECT_TRUE(connection->DownloadFolder(u"lib", install.logic() + u"copy"));
    EXPECT_EQ(install.readFile("copy/sub/b.dwg"), "b");
    EXPECT_EQ(install.readFile("copy/a.DWG"), "a");
}

TEST_F(StagingOnlyInFolders, StagingReplacesAFileThroughAStagingFileInItsOwnFolderOnlyWithFtpBg) {
    install.writeFile("LocalData/Ftp.bg", "");
    site.writeFile("lib/a.dwg", "old");
    auto connection = client();
    install.writeFile("new.dwg", "new");
    EXPECT_TRUE(connection->UploadFile(install.logic() + u"new.dwg", u"lib\\a.dwg"));
    EXPECT_EQ(site.readFile("lib/a.dwg"), "new");
    EXPECT_FALSE(connection->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));  // staged at the root: refused
    for (const auto& entry : std::filesystem::recursive_directory_iterator(site.native()))
        EXPECT_NE(entry.path().filename().string()[0], '#') << entry.path();

    QxFs::DeleteFile(install.logic() + u"LocalData\\Ftp.bg");
    auto plain = client();
    EXPECT_TRUE(plain->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));  // without Ftp.bg: put straight
    EXPECT_EQ(site.readFile("a.dwg"), "new");
}

TEST_F(FtpTransfer, AFailedUploadSaysWhichFile) {
    auto connection = client();
    install.writeFile("new.dwg", "new");
    EXPECT_FALSE(connection->UploadFile(install.logic() + u"new.dwg", u"nosuch\\a.dwg"));
    ASSERT_EQ(output.boxes.size(), 1u);
    EXPECT_EQ(output.boxes[0].text, u"文件 a.dwg 上传失败，请确认是否被其它客户端用户调用！");
    EXPECT_EQ(output.boxes[0].style, unsigned(MB_ICONWARNING));
}

TEST_F(DroppingServer, ADownloadDroppedMidTransferFailsAfterOneReconnectAndWritesNothing) {
    site.writeFile("big.dwg", std::string(100000, 'x'));
    install.writeFile("big.dwg", "mine");
    auto connection = client();
    EXPECT_FALSE(connection->DownloadFile(u"big.dwg", install.logic() + u"big.dwg"));
    EXPECT_EQ(install.readFile("big.dwg"), "mine");
    EXPECT_TRUE(connection->IsConnected());  // the reconnect worked; only the file failed
}

TEST_F(EndlessServer, ADownloadIsBoundedAndLeavesNothingBehindWhenTheSiteSendsWithoutEnd) {
    site.writeFile("endless.dwg", "small");
    install.writeFile("endless.dwg", "mine");
    CMyFtpConnection connection;
    FtpTimings timings = shortTimings();
    timings.unannouncedDownloadLimit = 1 << 20;
    connection.SetTimings(timings);
    ASSERT_TRUE(connection.ConnectServer());
    EXPECT_FALSE(connection.DownloadFile(u"endless.dwg", install.logic() + u"endless.dwg"));
    EXPECT_EQ(install.readFile("endless.dwg"), "mine");
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(install.native())) files += entry.is_regular_file();
    EXPECT_EQ(files, 1u);  // no temporary file is left beside the target
}

TEST_F(FtpTransfer, APartLibraryLockThatCanBeRemovedWasStale) {
    auto connection = client();
    EXPECT_FALSE(connection->IsPartLibInUse());
    site.writeFile("Part2lib/Part2Lib.ldb", "x");
    EXPECT_FALSE(connection->IsPartLibInUse());
    EXPECT_FALSE(site.exists("Part2lib/Part2Lib.ldb"));
}

namespace {

// Knows no passive mode: only a client that keeps to the login file's passive flag "0" gets through.
class UserServer : public RepositoryFixture {
protected:
    UserServer() : RepositoryFixture({"--user", "ann", "--password", "s3cret", "--refuse-pasv"}) {}

    void writeUserLogin(const CString& anonymous, const CString& password, const CString& passive) {
        FtpLoginLines lines;
        lines[kLoginHost] = u"127.0.0.1";
        lines[kLoginPort] = CString(std::to_string(server->port()));
        lines[kLoginAnonymous] = anonymous;
        lines[kLoginUser] = u"ann";
        lines[kLoginPassword] = password;
        lines[kLoginPassive] = passive;
        ASSERT_TRUE(WriteLoginInfo(loginFile(), lines));
    }
};

} // namespace

TEST_F(UserServer, LogsInAsTheUserAndKeepsToThePassiveFlag) {
    site.writeFile("a.dwg", "a");
    install.writeFile("b.dwg", "b");
    for (const bool passive : {false, true}) {
        writeUserLogin(u"0", u"s3cret", passive ? u"1" : u"0");
        auto connection = client();
        EXPECT_EQ(connection->DownloadFile(u"a.dwg", install.logic() + u"a.dwg"), !passive) << passive;
        EXPECT_EQ(connection->RemotePathExists(u"a.dwg"), !passive) << passive;
    }
    writeUserLogin(u"0", u"s3cret", u"0");
    EXPECT_TRUE(client()->UploadFile(install.logic() + u"b.dwg", u"b.dwg"));
    EXPECT_EQ(site.readFile("b.dwg"), "b");

    writeUserLogin(u"0", u"wrong", u"1");
    CMyFtpConnection refused;
    refused.SetTimings(shortTimings());
    EXPECT_FALSE(refused.ConnectServer());
    // The anonymous flag leaves user and password out: this site has no anonymous login.
    writeUserLogin(u"1", u"s3cret", u"1");
    EXPECT_FALSE(refused.ConnectServer());
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

namespace {

class StallingServer : public RepositoryFixture {
protected:
    StallingServer() : RepositoryFixture({"--stall-retr", "hung.dwg"}) {}
};

FtpTimings oneSecondStalls() {
    FtpTimings timings = shortTimings();
    timings.stallTimeoutMs = 1000;
    return timings;
}

} // namespace

TEST_F(StallingServer, ADownloadThatStopsMovingIsGivenUpAndTheConnectionStaysUsable) {
    site.writeFile("hung.dwg", "never sent");
    site.writeFile("fine.dwg", "fine");
    CMyFtpConnection connection;
    connection.SetTimings(oneSecondStalls());
    ASSERT_TRUE(connection.ConnectServer());
    EXPECT_FALSE(connection.DownloadFile(u"hung.dwg", install.logic() + u"hung.dwg"));
    EXPECT_FALSE(install.exists("hung.dwg"));
    EXPECT_TRUE(connection.DownloadFile(u"fine.dwg", install.logic() + u"fine.dwg"));
}

TEST_F(FtpTransfer, ASiteThatAcceptsButNeverGreetsFailsTheConnect) {
    // A socket that listens and never answers: the connection is made by the kernel, the greeting never comes.
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_GE(listener, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 4), 0);
    socklen_t length = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length);
    writeLogin(u"", ntohs(address.sin_port));

    CMyFtpConnection connection;
    connection.SetTimings(oneSecondStalls());
    EXPECT_FALSE(connection.ConnectServer());
    EXPECT_FALSE(connection.IsConnected());
    ::close(listener);
}
