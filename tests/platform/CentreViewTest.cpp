// qxinspect centre: what the store holds, as JSON, without changing it.
#include "CentreTestSupport.h"

#include "centre/operations/BomCentreOperations.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

namespace {

struct InspectRun {
    int status = -1;
    std::string out;
    std::string err;
};

InspectRun inspectCentre(const TempFolder& folder, const std::string& store) {
    const std::string dir = folder.native() + "/";
    const std::string command = std::string("'") + QX_BINARY_DIR + "/bin/qxinspect' centre --store '" + store + "' > '" + dir +
                                "stdout' 2> '" + dir + "stderr'";
    const int raw = std::system(command.c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, folder.readFile("stdout"), folder.readFile("stderr")};
}

} // namespace

TEST(CentreInspect, ShowsProjectsTreesRevisionsAndUsageFiles) {
    TempFolder folder;
    const std::string path = folder.native() + "/centre.db";
    {
        CSqliteCentreStore store(path);
        CBomCentreOperations centre(store);
        const CentreUser ann{u"华东电气", u"ann"};
        auto tree = centre_test::substation();
        centre.SubmitItm(ann, *tree);
        tree->m_arrCabinets[1]->m_arrPrimaryBom[0].m_strRowCount = u"7";
        centre.SubmitBom(ann, *tree);
        centre.KeepUsageFile(ann, u"host/user", u"42", u"<用量/>");
    }
    const std::string before = folder.readFile("centre.db");
    const InspectRun run = inspectCentre(folder, path);
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(folder.readFile("centre.db"), before);

    const auto json = nlohmann::json::parse(run.out);
    EXPECT_EQ(json["schema_version"], kCentreSchemaVersion);
    ASSERT_EQ(json["projects"].size(), 1u);
    const auto& project = json["projects"][0];
    EXPECT_EQ(project["m_strName"], "华东变电站");
    EXPECT_EQ(project["enterprise"], "华东电气");
    const auto& lines = project["tree"]["m_arrChildren"][1];
    EXPECT_EQ(lines["m_strType"], "100");
    const auto& feeder = lines["m_arrChildren"][0];
    EXPECT_EQ(feeder["m_strCirNo"], "AH2,AH3");
    ASSERT_EQ(feeder["revisions"].size(), 2u);
    EXPECT_EQ(feeder["revisions"][0]["kind"], "itm");
    EXPECT_EQ(feeder["revisions"][1]["number"], 2);
    EXPECT_EQ(feeder["revisions"][1]["rows"][0]["m_strRowCount"], "7");
    EXPECT_EQ(feeder["revisions"][1]["rows"][0]["secondary"], false);
    ASSERT_EQ(json["usage_files"].size(), 1u);
    EXPECT_EQ(json["usage_files"][0]["key"], "42");
}

TEST(CentreInspect, AMissingOrDamagedStoreIsUnreadableAndNotCreated) {
    TempFolder folder;
    EXPECT_EQ(inspectCentre(folder, folder.native() + "/none.db").status, 1);
    EXPECT_FALSE(folder.exists("none.db"));
    folder.writeFile("text.db", std::string(2048, 'x'));
    const InspectRun run = inspectCentre(folder, folder.native() + "/text.db");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("is damaged"), std::string::npos) << run.err;
}
