// The web view in a real browser: headless Chromium, driven by tests/data/teamcentre/web_view.py through
// chromedriver, on a centre seeded with three revisions of a device by two users and another enterprise's
// project. The screenshot of the comparison page is kept in the build folder's artifacts/.
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <filesystem>

using nlohmann::json;
using namespace team_test;

namespace {

bool browserInstalled() {
    return std::filesystem::exists("/usr/bin/chromium") && std::filesystem::exists("/usr/bin/chromedriver") &&
           std::system("/usr/bin/python3 -c 'import selenium' >/dev/null 2>&1") == 0;
}

json row(const std::string& name, const std::string& model, const std::string& count) {
    return {{"label", ""}, {"name", name}, {"model", model}, {"count", count}, {"remark", ""}, {"code", ""}};
}

TEST(WebView, AManagerSeesTheProjectsTreeRevisionsAndTheirComparisonInChromium) {
    if (!browserInstalled()) GTEST_SKIP() << "chromium, chromium-driver or python3-selenium is not installed: the web view is not tested";
    TempFolder folder;
    AddAccounts(folder.native() + "/centre.db", {{"acme", "ann"}, {"acme", "bob"}, {"rival", "eve"}});
    HexmoordProcess server(folder.native() + "/centre.db");
    CHttpTransport http(server.endpoint());
    const std::string ann = LoginToken(http, "acme", "ann");
    const std::string bob = LoginToken(http, "acme", "bob");
    const std::string eve = LoginToken(http, "rival", "eve");

    auto tree = project(u"华东变电站", 2);
    tree->m_arrCabinets[0]->m_arrPrimaryBom.Add({CString(), u"电流互感器", u"LZZBJ9-10", u"3", CString(), CString()});
    tree->m_arrCabinets[0]->m_strCirName = u"进线柜";
    tree->m_arrCabinets[0]->m_strCirType = u"KYN28A-12";
    tree->m_arrCabinets[0]->m_strCirSize = u"800×1500×2300";
    json seeded = SubmittedTree(http, ann, *tree);
    json& device = seeded["children"][0]["children"][0];
    device["primary"] = json::array({row("断路器", "VS1-12/1250", "2"), row("电流互感器", "LZZBJ9-10", "3")});
    ASSERT_EQ(Request(http, "POST", "/api/submit-bom", {{"tree", seeded}}, ann).status, 200);
    device["primary"] = json::array({row("断路器", "VS1-12/1250", "2"), row("电压表", "6L2-V", "1")});
    device["secondary"] = json::array({row("综保装置", "PCS-9611", "1"), row("<b>bold</b>", "<script>alert(1)</script>", "1")});
    ASSERT_EQ(Request(http, "POST", "/api/submit-bom", {{"tree", seeded}}, bob).status, 200);
    SubmittedTree(http, eve, *project(u"竞争对手", 1));

    const std::filesystem::path artifacts = std::filesystem::path(QX_BINARY_DIR) / "artifacts";
    std::filesystem::create_directories(artifacts);
    const std::filesystem::path screenshot = artifacts / "web-comparison.png";
    std::filesystem::remove(screenshot);
    const std::string command = "/usr/bin/python3 " + std::string(QX_TEST_DATA_DIR) + "/teamcentre/web_view.py " +
                                server.endpoint() + " acme ann secret " + seeded["id"].get<std::string>() + " " +
                                device["id"].get<std::string>() + " " + screenshot.string();
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    ASSERT_TRUE(std::filesystem::exists(screenshot));
    EXPECT_GT(std::filesystem::file_size(screenshot), 10000u);
    const std::string log = server.output();
    EXPECT_NE(log.find("/compare 200"), std::string::npos) << log;
}

} // namespace
