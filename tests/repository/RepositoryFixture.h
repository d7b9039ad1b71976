// A repository client against a real FTP server: a temporary install folder with its login file, a
// temporary site root served on loopback, and short waits so that failures cost the tests little time.
#pragma once

#include "FtpTestServer.h"
#include "common/CapturedOutput.h"
#include "common/FtpTestTimings.h"
#include "common/ScriptedPrompts.h"
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "repository/FtpLoginFile.h"
#include "repository/MyFtpConnection.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

inline FtpTimings shortTimings() { return LoopbackFtpTimings(2000, 2000, 2, 50, 6); }

// What the login file of the install folder says; the port 0 is the test site's.
struct LoginFile {
    CString root;
    int port = 0;
    CString anonymous = u"1";
    CString user = u"";
    CString password = u"";
    CString passive = u"1";
};

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
        writeLogin({});
    }

    CString loginFile() const { return install.logic() + u"LocalData\\QxFTPLoginInfo.sys"; }

    void writeLogin(const LoginFile& login) {
        if (!server) serve();
        FtpLoginLines lines;
        lines[kLoginRootPath] = login.root;
        lines[kLoginHost] = u"127.0.0.1";
        lines[kLoginPort] = CString(std::to_string(login.port ? login.port : server->port()));
        lines[kLoginAnonymous] = login.anonymous;
        lines[kLoginUser] = login.user;
        lines[kLoginPassword] = login.password;
        lines[kLoginPassive] = login.passive;
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
