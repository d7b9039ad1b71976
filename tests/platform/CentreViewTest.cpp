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

TEST(CentreInspect, ShowsProjectsTreesRevisionsAndUsageFilesAndReadsNoMissingOrDamagedStore) {
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

    // One project, the feeder's two revisions and one usage file; an entry past the last is absent.
    const auto json = nlohmann::json::parse(run.out);
    const std::string feeder = "/projects/0/tree/m_arrChildren/1/m_arrChildren/0";
    for (const auto& [pointer, expected] : std::vector<std::pair<std::string, nlohmann::json>>{
             {"/schema_version", kCentreSchemaVersion}, {"/projects/0/m_strName", "华东变电站"}, {"/projects/0/enterprise", "华东电气"},
             {"/projects/1", nullptr}, {"/projects/0/tree/m_arrChildren/1/m_strType", "100"}, {feeder + "/m_strCirNo", "AH2,AH3"},
             {feeder + "/revisions/0/kind", "itm"}, {feeder + "/revisions/1/number", 2}, {feeder + "/revisions/2", nullptr},
             {feeder + "/revisions/1/rows/0/m_strRowCount", "7"}, {feeder + "/revisions/1/rows/0/secondary", false},
             {"/usage_files/0/key", "42"}, {"/usage_files/1", nullptr}}) {
        const nlohmann::json::json_pointer at(pointer);
        EXPECT_EQ(json.contains(at) ? json[at] : nullptr, expected) << pointer;
    }

    // A missing or damaged store is unreadable, and not created.
    EXPECT_EQ(inspectCentre(folder, folder.native() + "/none.db").status, 1);
    EXPECT_FALSE(folder.exists("none.db"));
    folder.writeFile("text.db", std::string(2048, 'x'));
    const InspectRun damaged = inspectCentre(folder, folder.native() + "/text.db");
    EXPECT_EQ(damaged.status, 1);
    EXPECT_NE(damaged.err.find("is damaged"), std::string::npos) << damaged.err;
}
