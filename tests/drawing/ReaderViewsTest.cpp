// qxinspect bom, title, head and circuits on the readers' DXF fixtures: JSON on standard output keyed by
// the records' names, paths in the machine's form, exit statuses 0, 1 and 2; and qxinspect drawing: the
// model of a DXF file as JSON.
#include "common/ShellRun.h"
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

ShellRun runView(const std::string& arguments) {
    const std::string command = std::string(QX_BINARY_DIR) + "/bin/qxinspect " + arguments + " 2>/dev/null";
    return RunShellCommand(command);
}

std::string fixture(const std::string& relative) {
    return std::string(QX_TEST_DATA_DIR) + "/readers/" + relative;
}

nlohmann::json viewJson(const std::string& view, const std::string& file) {
    const ShellRun run = runView(view + " '" + fixture(file) + "'");
    EXPECT_EQ(run.status, 0) << view;
    return nlohmann::json::parse(run.out, nullptr, false);
}

} // namespace

TEST(ReaderViewsTest, BomRowsKeyedByTheirColumns) {
    const auto doc = viewJson("bom", "K01/K01_secondary.dwg");
    ASSERT_TRUE(doc.is_object());
    EXPECT_EQ(doc["Path"], fixture("K01/K01_secondary.dwg"));
    ASSERT_EQ(doc["rows"].size(), 3u);
    EXPECT_EQ(doc["rows"][0], nlohmann::json({{"Names", "微型断路器"}, {"Types", "DZ47-60/2P"}, {"Counts", "2"},
                                              {"Codes", "ZK-0601"}, {"Prices", "12.5"}, {"Kinds", "Symb2"},
                                              {"Labels", "1QF"}, {"Notes", ""}, {"Extras", ""}}));
    EXPECT_EQ(doc["rows"][2]["Kinds"], "Symb1");
}

TEST(ReaderViewsTest, TitleAndHead) {
    const auto title = viewJson("title", "title_blocks.dxf");
    EXPECT_EQ(title, nlohmann::json({{"accepted", true}, {"number", "BZ-02"}, {"name", "柜体布置图"}}));
    const auto head = viewJson("head", "primary_diagram.dxf");
    EXPECT_EQ(head["found1"], true);
    EXPECT_EQ(head["textBus"], "TMY3x(80x8)");
    ASSERT_TRUE(head["id2"].is_string());
    EXPECT_NE(head["id1"], head["id2"]);
    // A drawing without head texts: flags false, ids null.
    const auto none = viewJson("head", "title_blocks.dxf");
    EXPECT_EQ(none["found2"], false);
    EXPECT_TRUE(none["idBus"].is_null());
}

TEST(ReaderViewsTest, CircuitsWithTheBomOfEachHandle) {
    const auto doc = viewJson("circuits", "primary_diagram.dxf");
    ASSERT_EQ(doc["circuits"].size(), 4u);
    const auto& k02 = doc["circuits"][1];
    EXPECT_EQ(k02["No"], "K02(1)");
    ASSERT_EQ(k02["Handles"].size(), 2u);
    ASSERT_EQ(k02["bom"].size(), 2u);
    EXPECT_EQ(k02["DwgFlags"], nlohmann::json::array({1, 1}));
    EXPECT_EQ(k02["DwgPaths"][0], fixture("primary_diagram.dxf"));
    EXPECT_EQ(k02["bom"][1]["types"], nlohmann::json::array({"VS1-12"}));
    EXPECT_EQ(k02["bom"][1]["result"], true);
    EXPECT_EQ(doc["circuits"][0]["SecondaryDrawings"], fixture("K01/K01_secondary.dwg"));
    EXPECT_EQ(doc["circuits"][0]["bom"][0]["prices"], nlohmann::json::array({"8000", ""}));
}

TEST(ReaderViewsTest, UnreadableDrawingsAndWrongCommandLines) {
    for (const char* view : {"bom", "title", "head", "circuits"}) {
        EXPECT_EQ(runView(std::string(view) + " '" + fixture("no_such.dwg") + "'").status, 1) << view;
        EXPECT_EQ(runView(std::string(view) + " '" + fixture("K01") + "'").status, 1) << view;
        EXPECT_EQ(runView(view).status, 2) << view;
    }
    const ShellRun broken = runView(std::string("bom '") + QX_TEST_DATA_DIR + "/dxf/broken_links.dxf'");
    EXPECT_EQ(broken.status, 0);
    EXPECT_TRUE(nlohmann::json::parse(broken.out, nullptr, false).is_object());
}

TEST(InspectDrawingTest, ShowsEntitiesXDataExtensionDictionariesAndNamedObjects) {
    const ShellRun run = runView(std::string("drawing '") + QX_TEST_DATA_DIR + "/dxf/sample_r2018.dxf'");
    ASSERT_EQ(run.status, 0);
    // Written as it goes, laid out exactly as the whole document would print.
    EXPECT_EQ(run.out, nlohmann::ordered_json::parse(run.out).dump(2) + "\n");
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
    // The old-style polyline shows its vertices as the light-weight one does.
    EXPECT_EQ(entities[6]["kind"], "POLYLINE");
    EXPECT_EQ(entities[6]["vertices"], nlohmann::json::parse("[[0.0,0.0],[10.0,0.0],[10.0,10.0]]"));
    EXPECT_EQ(entities[6]["bulges"][0], 0.5);
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
    const std::string dxf = std::string("drawing '") + QX_TEST_DATA_DIR + "/dxf/";
    EXPECT_EQ(runView(dxf + "broken_truncated.dxf'").status, 1);
    EXPECT_EQ(runView(dxf + "no_such.dxf'").status, 1);
    const ShellRun cyclic = runView(dxf + "broken_links.dxf'");
    ASSERT_EQ(cyclic.status, 0);
    EXPECT_NE(cyclic.out.find("\"cycle\": true"), std::string::npos);
    EXPECT_EQ(cyclic.out, nlohmann::ordered_json::parse(cyclic.out).dump(2) + "\n");
}
