// qxinspect bom, title, head and circuits on the readers' DXF fixtures: JSON on standard output keyed by
// the records' names, paths in the machine's form, exit statuses 0, 1 and 2; and qxinspect drawing: the
// model of a DXF file as JSON. What the readers find is checked in ReaderFixturesTest; here, how it shows.
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
    const ShellRun run = runView(view + " '" + file + "'");
    EXPECT_EQ(run.status, 0) << view;
    return nlohmann::json::parse(run.out, nullptr, false);
}

} // namespace

TEST(ReaderViewsTest, EachReaderShowsItsRecordsByNameAndFailsWithItsStatus) {
    const auto bom = viewJson("bom", fixture("K01/K01_secondary.dwg"));
    EXPECT_EQ(bom["Path"], fixture("K01/K01_secondary.dwg"));
    ASSERT_EQ(bom["rows"].size(), 3u);
    EXPECT_EQ(bom["rows"][0], nlohmann::json({{"Names", "微型断路器"}, {"Types", "DZ47-60/2P"}, {"Counts", "2"},
                                              {"Codes", "ZK-0601"}, {"Prices", "12.5"}, {"Kinds", "Symb2"},
                                              {"Labels", "1QF"}, {"Notes", ""}, {"Extras", ""}}));
    EXPECT_EQ(viewJson("title", fixture("title_blocks.dxf")),
              nlohmann::json({{"accepted", true}, {"number", "BZ-02"}, {"name", "柜体布置图"}}));
    EXPECT_EQ(viewJson("head", fixture("primary_diagram.dxf")),
              nlohmann::json({{"found1", true}, {"foundBus", true}, {"found2", true}, {"text1", "10kV"},
                              {"textBus", "TMY3x(80x8)"}, {"text2", "DC220V"}, {"id1", "44"}, {"id2", "47"},
                              {"idBus", "46"}}));
    // A drawing without head texts: flags false, ids null.
    const auto none = viewJson("head", fixture("title_blocks.dxf"));
    EXPECT_EQ(none["found2"], false);
    EXPECT_TRUE(none["idBus"].is_null());

    // Each circuit with all its fields and the BOM read at each of its handles.
    const auto circuits = viewJson("circuits", fixture("primary_diagram.dxf"));
    ASSERT_EQ(circuits["circuits"].size(), 4u);
    auto k02 = nlohmann::json::parse(R"json({"No": "K02(1)", "GroupCode": "G1", "Use": "出线", "Type": "KYN28A-12",
        "Cir1Voltage": "10kV", "Cir2Voltage": "DC220V", "MuXianType": "TMY", "TankCirNo": "60", "CabinetOrder": "",
        "RatedCurrent": "", "CarAssembly1": "C-02", "CarAssembly2": "", "CabinetAssembly": "", "CircuitName": "",
        "CircuitPower": "", "SecondaryDrawings": "", "DwgFlags": [1, 1], "Handles": ["64", "66"]})json");
    k02["DwgPaths"] = {fixture("primary_diagram.dxf"), fixture("primary_diagram.dxf")};
    const auto bomOfK02 = nlohmann::json::parse(R"json({"result": true, "types": ["VS1-12"], "codes": ["DL-1000"],
        "names": ["真空断路器"], "counts": ["1"], "prices": [""], "newAddInfo": []})json");
    k02["bom"] = {bomOfK02, bomOfK02};
    EXPECT_EQ(circuits["circuits"][1], k02);
    EXPECT_EQ(circuits["circuits"][0]["SecondaryDrawings"], fixture("K01/K01_secondary.dwg"));

    // Unreadable drawings and wrong command lines.
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

    bool found = false;
    for (const auto& entry : doc["namedObjects"]["entries"])
        if (entry["name"] == "QX_DWG_DICITIONARY") {
            found = true;
            EXPECT_EQ(entry["entries"][0]["items"][1]["value"], "A柜");
        }
    EXPECT_TRUE(found);

    EXPECT_EQ(runView(std::string("drawing '") + QX_TEST_DATA_DIR + "/dxf/broken_truncated.dxf'").status, 1);
    EXPECT_EQ(runView(std::string("drawing '") + QX_TEST_DATA_DIR + "/dxf/no_such.dxf'").status, 1);
    const ShellRun cyclic = runView(std::string("drawing '") + QX_TEST_DATA_DIR + "/dxf/broken_links.dxf'");
    ASSERT_EQ(cyclic.status, 0);
    EXPECT_NE(cyclic.out.find("\"cycle\": true"), std::string::npos);
    EXPECT_EQ(cyclic.out, nlohmann::ordered_json::parse(cyclic.out).dump(2) + "\n");
}
