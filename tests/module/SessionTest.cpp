#include "ModuleFixture.h"
#include "support/FileSystem.h"
#include "support/Locations.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using SessionStart = ModuleFixture;

// The endpoint comes from the host file's first line unless it holds only blanks or junk; a hand-over of four
// lines logs in with them as they stand and opens only a project of the projects folder.
TEST_F(SessionStart, TakesTheEndpointAndTheHandOverAndEndsWithoutAClient) {
    const struct {
        const char *hostFile, *handOver;  // null: none
        int autoLoginResult;
        const char16_t *endpoint, *loginSaw, *queried, *printed, *recent;  // loginSaw: enterprise|user|credential
    } rows[] = {
        {nullptr, nullptr, 1, kDefaultHexmoorEndpoint, u"", u"", u"", u"old"},
        {"  \t \r\n", "a\r\nb\r\nc\r\n", 1, kDefaultHexmoorEndpoint, u"", u"", u"", u"old"},
        {"  cloud.example:9000 \r\nsecond line\r\n", "a\r\nb\r\nc\r\nd\r\ne\r\n", 1, u"cloud.example:9000", u"", u"", u"", u"old"},
        {"\x01\x02\xff\xfe junk", " user \r\n ent\r\npass word \r\n  P-1  \r\n", 1, kDefaultHexmoorEndpoint, u" ent| user |pass word ",
         u"P-1", u"\nData\\HMHost.dat does not hold an endpoint; the default localhost:8585 stays.\n自动登录云端成功！",
         u"My Projects\\变电站\\变电站.itm"},
        {"", "u\r\ne\r\nc\r\n   \r\n", 1, kDefaultHexmoorEndpoint, u"e|u|c", u"", u"自动登录云端成功！", u"old"},
        {"", "u\r\ne\r\nc\r\nX\r\n", 1, kDefaultHexmoorEndpoint, u"e|u|c", u"X", u"自动登录云端成功！", u"old"},
        {"", "u\r\ne\r\nc\r\nP-1\r\n", 0, kDefaultHexmoorEndpoint, u"e|u|c", u"", u"自动登录云端失败！", u"old"}};
    cloud().projectNames[u"P-1"] = u"变电站";
    cloud().projectNames[u"X"] = u"..";
    install.writeFile("My Projects/变电站/变电站.itm", "$BEGIN NOTE OF PRJ\r\n");
    install.writeFile("My Projects/../...itm", "");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.handOver ? row.handOver : "none");
        install.writeFile("Data/recent.dat", "old");
        if (row.hostFile) install.writeFile("Data/HMHost.dat", row.hostFile);
        if (row.handOver) install.writeFile("Temp/HMID.txt", row.handOver);
        cloud().autoLoginResult = row.autoLoginResult;
        cloud().autoLogins.clear();
        cloud().projectNameQueries.clear();
        output.printed.Empty();
        HMStartSession();
        EXPECT_EQ(g_pHexmoorClient->m_strServer, CString(row.endpoint));
        CString saw, queried;
        for (const auto& login : cloud().autoLogins) {
            saw += login.enterprise + u"|" + login.user + u"|" + login.credential;
            EXPECT_TRUE(login.clientTag.StartsWith(u"CV_V9.0&") && !login.clientInfo.IsEmpty());
        }
        for (const CString& id : cloud().projectNameQueries) queried += id;
        EXPECT_EQ(saw, CString(row.loginSaw));
        EXPECT_EQ(queried, CString(row.queried));
        EXPECT_EQ(output.printed, CString(row.printed));
        EXPECT_TRUE(GetRecentProject().EndsWith(row.recent)) << GetRecentProject().ToUtf8();
        EXPECT_FALSE(install.exists("Temp/HMID.txt"));
        HMEndSession();
        EXPECT_EQ(g_pHexmoorClient, nullptr);
        EXPECT_FALSE(EnsureHMLogin());
    }
    EXPECT_TRUE(CString(kDefaultHexmoorEndpoint).EndsWith(u":8585"));
}

TEST_F(SessionStart, ARewriteInPlaceCutOffByAKillIsUndoneAtTheNextStart) {
    install.writeFile("Locked/Hexmoor.xml", "<Hexmoor>what the person had</Hexmoor>");
    const std::string locked = install.native() + "/Locked";
    ::chmod(locked.c_str(), 0555);
    // The writer dies on its file-size limit half-way through the new text, as a kill would stop it.
    const pid_t writer = ::fork();
    if (writer == 0) {
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        QxFs::WriteAtomic(install.logic() + u"Locked\\Hexmoor.xml", std::string(1 << 20, 'x'));
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
    ASSERT_EQ(install.readFile("Locked/Hexmoor.xml"), std::string(4096, 'x'));

    // A copy that a live writer may still use is left alone.
    std::filesystem::path copy;
    for (const auto& entry : std::filesystem::directory_iterator(install.native() + "/Temp")) copy = entry.path();
    ASSERT_FALSE(copy.empty());
    const std::filesystem::path live = copy.parent_path() / (".qxinplace-" + std::to_string(::getpid()) + "-live00");
    std::filesystem::rename(copy, live);
    HMStartSession();
    HMEndSession();
    EXPECT_EQ(install.readFile("Locked/Hexmoor.xml"), std::string(4096, 'x'));
    std::filesystem::rename(live, copy);

    HMStartSession();
    EXPECT_EQ(install.readFile("Locked/Hexmoor.xml"), "<Hexmoor>what the person had</Hexmoor>");
    EXPECT_TRUE(output.printed.Contains(CString::FromUtf8(locked + "/Hexmoor.xml上次改写未能完成")));
    EXPECT_TRUE(std::filesystem::is_empty(install.native() + "/Temp"));
    ::chmod(locked.c_str(), 0755);
}
