// qxinspect scan, parts and device: the views run the extraction on a project laid out in a temporary
// folder and print JSON; exit statuses for inputs that cannot be opened.
#include "common/ShellRun.h"
#include "AssemblyFixtures.h"

#include <nlohmann/json.hpp>

namespace {

ShellRun inspect(const std::string& arguments) {
    const std::string command = std::string(QX_BINARY_DIR) + "/bin/qxinspect " + arguments + " 2>/dev/null";
    return RunShellCommand(command);
}

std::string quoted(const std::string& path) { return "'" + path + "'"; }

class AssemblyViewsTest : public AssemblyTest {
protected:
    std::string native(const std::string& relative) const { return m_folder.native() + "/" + relative; }
};

} // namespace

TEST_F(AssemblyViewsTest, ScanShowsGroupsInTheMachinesPathsDeviceScansTheTopProjectPartsShowAllDrawings) {
    layOutStation();
    const ShellRun run = inspect("scan " + quoted(native("Station")));
    ASSERT_EQ(run.status, 0);
    const auto doc = nlohmann::json::parse(run.out);
    EXPECT_EQ(doc["primary"], native("Station/一次系统图.dwg"));
    EXPECT_EQ(doc["circuits"], 7);
    ASSERT_EQ(doc["groups"].size(), 6u);
    const auto& drawer = doc["groups"][0]["m_arrDrawers"][1];
    EXPECT_EQ(drawer["m_strName"], "2");
    EXPECT_EQ(drawer["m_strDrawing"], native("Station/Secondary/S2.dwg"));
    EXPECT_EQ(drawer["m_strTitleNo"], "S2");
    EXPECT_EQ(drawer["m_arrParts"][0]["m_strCode"], "R1");
    EXPECT_EQ(drawer["m_arrDwgBoms"][0]["Labels"], nlohmann::json::array({"2HL"}));
    EXPECT_EQ(doc["groups"][1]["m_arrParts"][0]["m_strCount"], "3");

    m_folder.makeFolder("Empty");
    const ShellRun empty = inspect("scan " + quoted(native("Empty")));
    ASSERT_EQ(empty.status, 0);
    EXPECT_TRUE(nlohmann::json::parse(empty.out)["groups"].empty());
    EXPECT_EQ(inspect("scan " + quoted(native("Missing"))).status, 1);
    EXPECT_EQ(inspect("scan").status, 2);

    // A device below a sub-project: the top project's primary diagram is the one scanned.
    m_folder.writeFile("Station/Sub/Sub.itm", "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
    m_folder.writeFile("Station/Sub/K02/K02.prj", DeviceFileText("K02"));
    m_folder.writeFile("Station/K01/K01.prj", DeviceFileText("K01，K02"));

    const ShellRun plain = inspect("device " + quoted(native("Station/Sub/K02/K02.prj")));
    ASSERT_EQ(plain.status, 0);
    const auto k02 = nlohmann::json::parse(plain.out);
    EXPECT_EQ(k02["projectFolder"], native("Station"));
    EXPECT_EQ(k02["m_strCirNo"], "K02");
    EXPECT_EQ(k02["m_arrPrimaryBom"][0]["m_strRowName"], "N1");
    EXPECT_EQ(k02["m_arrSecondaryBom"][0]["m_strRowLabel"], "");
    EXPECT_EQ(k02["m_arrSecondaryBom"][0]["m_strRowModel"], "RX-1");
    EXPECT_TRUE(k02["messages"].empty());
    EXPECT_EQ(k02["g_bBomCheckFailed"], false);

    const ShellRun failed = inspect("device " + quoted(native("Station/K01/K01.prj")));
    ASSERT_EQ(failed.status, 0);
    const auto k01 = nlohmann::json::parse(failed.out);
    EXPECT_EQ(k01["m_nCabCount"], 2);
    ASSERT_EQ(k01["messages"].size(), 1u);
    EXPECT_EQ(k01["messages"][0],
              "屏柜 K01 和屏柜 K02 内容应该一致，但是现在不一致，一次元件条目数量不同，请检查一次系统图。");
    EXPECT_EQ(k01["g_bBomCheckFailed"], true);

    EXPECT_EQ(inspect("device " + quoted(native("Station/Station.itm"))).status, 1);
    EXPECT_EQ(inspect("device " + quoted(native("Station/none.prj"))).status, 1);

    // The parts view shows the records of all drawings together.
    m_folder.writeFile("d/A.dwg", AssemblyFixture("device_a.dxf"));
    m_folder.writeFile("d/B.dwg", AssemblyFixture("device_b.dxf"));
    const ShellRun parts = inspect("parts " + quoted(native("d/A.dwg")) + " " + quoted(native("d/none.dwg")) + " " +
                                   quoted(native("d/B.dwg")));
    ASSERT_EQ(parts.status, 0);
    const auto records = nlohmann::json::parse(parts.out);
    EXPECT_EQ(records["drawings"][1]["read"], false);
    ASSERT_EQ(records["parts"].size(), 3u);
    const auto& rows = records["parts"][0]["PartBoms"];
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1]["Path"], native("d/B.dwg"));
    EXPECT_EQ(rows[0]["Components"].size(), 2u);
    EXPECT_EQ(records["parts"][2]["Location"], "+B2");
    EXPECT_EQ(inspect("parts " + quoted(native("d/none.dwg"))).status, 1);
}
