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
    RepositoryFixture() {
        install.makeFolder("LocalData");
        SetCorvaneInstallDirOverride(install.logic());
        ::setenv("CORVANE_HOST_ID", "10.0.0.1(alpha)", 1);
    }
    ~RepositoryFixture() override {
        ::unsetenv("CORVANE_HOST_ID");
        SetCorvaneInstallDirOverride(CString());
    }

    // Starts the site with the faults that `options` of tests/data/repository/ftp_server.py give it; a test
    // that names none gets a site without faults at its first connection.
    void serve(std::vector<std::string> options = {}) {
        server = std::make_unique<FtpTestServer>(site.native(), std::move(options));
        writeLogin(u"");
    }

    CString loginFile() const { return install.logic() + u"LocalData\\QxFTPLoginInfo.sys"; }

    void writeLogin(const CString& root, int port = 0) {
        if (!server) serve();
        FtpLoginLines lines;
        lines[kLoginRootPath] = root;
        lines[kLoginHost] = u"127.0.0.1";
        lines[kLoginPort] = CString(std::to_string(port ? port : server->port()));
        lines[kLoginAnonymous] = u"1";
        lines[kLoginPassive] = u"1";
        install.writeFile("LocalData/QxFTPLoginInfo.sys", "");
        ASSERT_TRUE(WriteLoginInfo(loginFile(), lines));
    }

    // A client of the install folder, not yet connected.
    std::unique_ptr<CMyFtpConnection> connection(const FtpTimings& timings = shortTimings()) {
        if (!server) serve();
        auto made = std::make_unique<CMyFtpConnection>();
        made->SetTimings(timings);
        return made;
    }
    // A client of the install folder, connected.
    std::unique_ptr<CMyFtpConnection> client(const FtpTimings& timings = shortTimings()) {
        auto connected = connection(timings);
        EXPECT_TRUE(connected->ConnectServer()) << output.printed;
        return connected;
    }

    static void actAs(const char* hostId) { ::setenv("CORVANE_HOST_ID", hostId, 1); }

    TempFolder install;
    TempFolder site;
    CapturedOutput output;
    ScriptedPrompts prompts;
    std::unique_ptr<FtpTestServer> server;
};
