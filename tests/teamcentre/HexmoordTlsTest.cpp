// hexmoord over HTTPS: with a certificate the client trusts through HEXMOOR_CA_FILE, the client logs in;
// without that trust, the connection is refused rather than made blind.
#include "common/CapturedOutput.h"
#include "platform/cloud/HexmoorClient.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"

#include <cstdlib>

namespace {

TEST(HexmoordTls, TheClientLogsInOverHttpsOnlyWithATrustedCertificate) {
    TempFolder folder;
    // A certificate without its key is refused at start.
    EXPECT_THROW(HexmoordProcess(folder.native() + "/centre.db", {"--tls-cert", folder.native() + "/missing.pem"}),
                 std::runtime_error);
    const std::string cert = folder.native() + "/cert.pem";
    const std::string key = folder.native() + "/key.pem";
    const std::string make = "openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=127.0.0.1 "
                             "-addext subjectAltName=IP:127.0.0.1 -keyout " + key + " -out " + cert + " >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) GTEST_SKIP() << "openssl cannot make a test certificate here";
    team_test::AddAccounts(folder.native() + "/centre.db", {{"acme", "ann"}});
    HexmoordProcess server(folder.native() + "/centre.db", {"--tls-cert", cert, "--tls-key", key});
    const std::string endpoint = "https://127.0.0.1:" + std::to_string(server.port());

    CapturedOutput output;
    const auto client = team_test::ClientOf(endpoint, u"acme", u"ann");
    ::unsetenv("HEXMOOR_CA_FILE");
    EXPECT_EQ(client->autoLogin(), -1);
    EXPECT_NE(output.printed.Find(u"cannot be reached"), -1) << output.printed.ToUtf8();

    ::setenv("HEXMOOR_CA_FILE", cert.c_str(), 1);
    EXPECT_EQ(client->autoLogin(), 1) << output.printed.ToUtf8();
    EXPECT_TRUE(client->UserInfoCollect(u"item", u"key", u"text"));
    ::unsetenv("HEXMOOR_CA_FILE");
    // Plain HTTP to the HTTPS port gets no answer a client could take.
    CHttpTransport plain("http://127.0.0.1:" + std::to_string(server.port()));
    EXPECT_EQ(plain.request("GET", "/api/projects", "", "").status, 0);
}

} // namespace
