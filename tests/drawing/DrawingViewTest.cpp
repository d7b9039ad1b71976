// qxinspect drawing: the model of a DXF file as JSON on standard output.
#include "common/ShellRun.h"
#include "DxfFixtures.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <sys/wait.h>

namespace {

using InspectRun = ShellRun;

InspectRun inspect(const std::string& file) {
    const std::string command = std::string(QX_BINARY_DIR) + "/bin/qxinspect drawing '" + file + "' 2>/dev/null";
    return RunShellCommand(command);
}

} // namespace

TEST(InspectDrawingTest, ShowsEntitiesXDataExtensionDictionariesAndNamedObjects) {
    const InspectRun run = inspect(std::string(QX_TEST_DATA_DIR) + "/dxf/sample_r2018.dxf");
    ASSERT_EQ(run.status, 0);
    const auto doc = nlohmann::json::parse(run.out);
    const nlohmann::json* model = nullptr;
    for (const auto& block : doc["blocks"])
        if (block["name"] == "*Model_Space") model = &block;
    ASSERT_NE(model, nullptr);
    const auto& entities = (*model)["entities"];
    ASSERT_EQ(entities.size(), 8u);
    EXPECT_EQ(entities[0]["kind"], "TEXT");
    EXPECT_EQ(entities[0]["textString"], "一次额定电压:10kV");
    EXPECT_EQ(entities[1]["xdata"][1]["items"][0]["code"], 1005);
    EXPECT_EQ(entities[1]["xdata"][1]["items"][0]["value"], entities[2]["handle"]);
    EXPECT_EQ(entities[1]["extensionDictionary"]["entries"][0]["items"][0]["value"], "标号:QF1");

    const auto& circuit = entities[3];
    EXPECT_EQ(circuit["kind"], "INSERT");
    EXPECT_EQ(circuit["blockName"], "CIRCUIT");
    EXPECT_EQ(circuit["extents"]["min"][0].get<double>(), 96.0);
    EXPECT_EQ(circuit["xdata"][1]["items"][2]["value"], nlohmann::json::array({1.0, 2.0, 3.0}));
    EXPECT_EQ(entities[7]["bulges"][1], -1.0);
    EXPECT_EQ(entities[7]["vertices"][1], nlohmann::json::array({3.0, 4.0}));

    bool found = false;
    for (const auto& entry : doc["namedObjects"]["entries"])
        if (entry["name"] == "QX_DWG_DICITIONARY") {
            found = true;
            EXPECT_EQ(entry["entries"][0]["items"][1]["value"], "A柜");
        }
    EXPECT_TRUE(found);
}

TEST(InspectDrawingTest, UnreadableDrawingsAndCyclesAreHandled) {
    EXPECT_EQ(inspect(std::string(QX_TEST_DATA_DIR) + "/dxf/broken_truncated.dxf").status, 1);
    EXPECT_EQ(inspect(std::string(QX_TEST_DATA_DIR) + "/dxf/no_such.dxf").status, 1);
    const InspectRun cyclic = inspect(std::string(QX_TEST_DATA_DIR) + "/dxf/broken_links.dxf");
    ASSERT_EQ(cyclic.status, 0);
    EXPECT_NE(cyclic.out.find("\"cycle\": true"), std::string::npos);
}
