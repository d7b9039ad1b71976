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

TEST_F(SessionStart, EndpointComesFromHostFileUnlessItHoldsOnlyBlanks) {
    HMStartSession();
    EXPECT_EQ(g_pHexmoorClient->m_strServer, CString(kDefaultHexmoorEndpoint));
    EXPECT_TRUE(g_pHexmoorClient->m_strServer.EndsWith(u":8585"));
    HMEndSession();

    install.writeFile("Data/HMHost.dat", "  \t \r\n");
    HMStartSession();
    EXPECT_EQ(g_pHexmoorClient->m_strServer, CString(kDefaultHexmoorEndpoint));
    HMEndSession();

    install.writeFile("Data/HMHost.dat", "  cloud.example:9000 \r\nsecond line\r\n");
    HMStartSession();
    EXPECT_EQ(g_pHexmoorClient->m_strServer, CString(u"cloud.example:9000"));
    EXPECT_TRUE(output.printed.IsEmpty());
}

TEST_F(SessionStart, BinaryJunkInTheHostFileKeepsTheDefaultWithOneLine) {
    install.writeFile("Data/HMHost.dat", std::string("\x01\x02\xff\xfe junk", 9));
    HMStartSession();
    EXPECT_EQ(g_pHexmoorClient->m_strServer, CString(kDefaultHexmoorEndpoint));
    EXPECT_TRUE(output.printed.Contains(u"HMHost.dat"));
}

TEST_F(SessionStart, HandOverWithWrongLineCountIsDeletedAndTriesNoLogin) {
    for (const char* text : {"a\r\nb\r\nc\r\n", "a\r\nb\r\nc\r\nd\r\ne\r\n"}) {
        install.writeFile("Temp/HMID.txt", text);
        HMStartSession();
        EXPECT_FALSE(install.exists("Temp/HMID.txt"));
        EXPECT_EQ(cloud().autoLoginCalls, 0);
        EXPECT_TRUE(output.printed.IsEmpty());
        HMEndSession();
    }
}

TEST_F(SessionStart, HandOverTakesLinesAsTheyStandAndTrimsOnlyTheProjectId) {
    install.writeFile("Temp/HMID.txt", " user \r\n ent\r\npass word \r\n  P-1  \r\n");
    cloud().projectNames[u"P-1"] = u"变电站";
    install.writeFile("My Projects/变电站/变电站.itm", "$BEGIN NOTE OF PRJ\r\n");
    HMStartSession();

    ASSERT_EQ(cloud().autoLogins.size(), 1u);
    const auto& login = cloud().autoLogins[0];
    EXPECT_EQ(login.user, CString(u" user "));
    EXPECT_EQ(login.enterprise, CString(u" ent"));
    EXPECT_EQ(login.credential, CString(u"pass word "));
    EXPECT_TRUE(login.clientTag.StartsWith(u"CV_V9.0&"));
    EXPECT_FALSE(login.clientInfo.IsEmpty());
    ASSERT_EQ(cloud().projectNameQueries.size(), 1u);
    EXPECT_EQ(cloud().projectNameQueries[0], CString(u"P-1"));
    EXPECT_TRUE(output.printed.Contains(u"自动登录云端成功！"));
    EXPECT_TRUE(GetRecentProject().EndsWith(u"My Projects\\变电站\\变电站.itm"));
    EXPECT_FALSE(install.exists("Temp/HMID.txt"));
}

TEST_F(SessionStart, HandOverWithEmptyProjectIdLogsInAndLeavesTheRecentFile) {
    install.writeFile("Data/recent.dat", "old");
    install.writeFile("Temp/HMID.txt", "u\r\ne\r\nc\r\n   \r\n");
    HMStartSession();
    EXPECT_EQ(cloud().autoLoginCalls, 1);
    EXPECT_TRUE(cloud().projectNameQueries.empty());
    EXPECT_EQ(install.readFile("Data/recent.dat"), "old");
}

TEST_F(SessionStart, HandOverNeverFollowsAProjectNameOutOfTheProjectsFolder) {
    install.writeFile("Data/recent.dat", "old");
    install.writeFile("Temp/HMID.txt", "u\r\ne\r\nc\r\nX\r\n");
    cloud().projectNames[u"X"] = u"..";
    install.writeFile("My Projects/../...itm", "");
    HMStartSession();
    EXPECT_EQ(install.readFile("Data/recent.dat"), "old");
}

TEST_F(SessionStart, FailedAutomaticLoginSaysSoAndAsksForNoProject) {
    cloud().autoLoginResult = 0;
    install.writeFile("Temp/HMID.txt", "u\r\ne\r\nc\r\nP\r\n");
    HMStartSession();
    EXPECT_EQ(output.printed, CString(u"自动登录云端失败！"));
    EXPECT_TRUE(cloud().projectNameQueries.empty());
}

TEST_F(SessionStart, SessionEndDropsTheClient) {
    HMStartSession();
    ASSERT_NE(g_pHexmoorClient, nullptr);
    HMEndSession();
    EXPECT_EQ(g_pHexmoorClient, nullptr);
    EXPECT_FALSE(EnsureHMLogin());
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
