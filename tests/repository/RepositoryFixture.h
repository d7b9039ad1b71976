// A repository client against a real FTP server: a temporary install folder with its login file, a
// temporary site root served on loopback, and short waits so that failures cost the tests little time.
#pragma once

#include "FtpTestServer.h"
#include "common/CapturedOutput.h"
#include "common/ScriptedPrompts.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "repository/FtpLoginFile.h"
#include "repository/MyFtpConnection.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

inline FtpTimings shortTimings() {
    FtpTimings timings;
    timings.connectTimeoutMs = 2000;
    timings.stallTimeoutMs = 2000;
    timings.connectAttempts = 2;
    timings.connectPauseMs = 50;
    timings.lockPauseMs = 50;
    timings.lockWaits = 6;
    timings.treeFilePauseMs = 0;
    return timings;
}

class RepositoryFixture : public ::testing::Test {
protected:
    explicit RepositoryFixture(std::vector<std::string> serverOptions = {}) {
        install.makeFolder("LocalData");
        SetCorvaneInstallDirOverride(install.logic());
        ::setenv("CORVANE_HOST_ID", "10.0.0.1(alpha)", 1);
        server = std::make_unique<FtpTestServer>(site.native(), std::move(serverOptions));
        writeLogin(u"");
    }
    ~RepositoryFixture() override {
        ::unsetenv("CORVANE_HOST_ID");
        SetCorvaneInstallDirOverride(CString());
    }

    CString loginFile() const { return install.logic() + u"LocalData\\QxFTPLoginInfo.sys"; }

    void writeLogin(const CString& root, int port = 0) {
        FtpLoginLines lines;
        lines[kLoginRootPath] = root;
        lines[kLoginHost] = u"127.0.0.1";
        lines[kLoginPort] = CString(std::to_string(port ? port : server->port()));
        lines[kLoginAnonymous] = u"1";
        lines[kLoginPassive] = u"1";
        install.writeFile("LocalData/QxFTPLoginInfo.sys", "");
        ASSERT_TRUE(WriteLoginInfo(loginFile(), lines));
    }

    // A client of the install folder, connected.
    std::unique_ptr<CMyFtpConnection> client() {
        auto connection = std::make_unique<CMyFtpConnection>();
        connection->SetTimings(shortTimings());
        EXPECT_TRUE(connection->ConnectServer()) << output.printed;
        return connection;
    }

    static void actAs(const char* hostId) { ::setenv("CORVANE_HOST_ID", hostId, 1); }

    TempFolder install;
    TempFolder site;
    CapturedOutput output;
    ScriptedPrompts prompts;
    std::unique_ptr<FtpTestServer> server;
};
