// qxinspect bom, title, head and circuits on the readers' DXF fixtures: JSON on standard output keyed by
// the records' names, paths in the machine's form, exit statuses 0, 1 and 2.
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
    const auto& row = doc["rows"][0];
    for (const char* key : {"Names", "Types", "Counts", "Codes", "Prices", "Kinds", "Labels", "Notes", "Extras"})
        EXPECT_TRUE(row.contains(key)) << key;
    EXPECT_EQ(row["Names"], "微型断路器");
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
