// qxinspect in both directions: hexmoor-write makes the text, hexmoor reads it back as the commands do.
#include "common/ShellRun.h"
#include "common/TempFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

struct InspectRun {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs qxinspect with the given arguments and standard input, in the folder.
InspectRun inspect(const TempFolder& folder, const std::string& arguments, const std::string& input = "") {
    folder.writeFile("stdin", input);
    const std::string dir = folder.native() + "/";
    const ShellRun run = RunShellCommand(std::string("'") + QX_BINARY_DIR + "/bin/qxinspect' " + arguments + " < '" + dir +
                                         "stdin' 2> '" + dir + "stderr'");
    return {run.status, run.out, folder.readFile("stderr")};
}

} // namespace

TEST(HexmoorInspect, WrittenTextReadsBackWithRows) {
    TempFolder folder;
    const nlohmann::json device = {
        {"m_strName", "K01 & <柜>"},
        {"m_strID", "D-1"},
        {"m_strType", 0},
        {"m_strCirNo", "1,2"},
        {"m_strCirSize", "800*1500"},
        {"m_strBoms", "<cabinet><product F_Name=\"断路器\" F_Model=\"M\" F_Numbers=\"2\" F_IsSecondary=\"1\"/>"
                      "<product F_Name=\"柜体\" F_Parent_BOM_ID=\"\"/></cabinet>"},
        {"m_strDataSchema", "<NewDataSet/>"},
        {"unknown", {1, 2}},
    };
    // The exact text is HexmoorWriterTest's; here the tool's two directions must give the node back whole.
    const InspectRun written = inspect(folder, "hexmoor-write", device.dump());
    ASSERT_EQ(written.status, 0) << written.err;
    folder.writeFile("Hexmoor.xml", written.out);
    const InspectRun read = inspect(folder, "hexmoor '" + folder.native() + "/Hexmoor.xml'");
    ASSERT_EQ(read.status, 0) << read.err;
    EXPECT_EQ(read.err, "");
    const auto row = [](const char* name, const char* model, const char* count) {
        return nlohmann::json{{"m_strRowLabel", ""}, {"m_strRowName", name},     {"m_strRowModel", model},
                              {"m_strRowCount", count}, {"m_strRowRemark", ""}, {"m_strRowCode", ""}};
    };
    nlohmann::json expected = device;
    expected.erase("unknown");
    expected.update({{"m_strType", "0"}, {"m_strCirName", ""}, {"m_strCirType", ""}});
    expected["m_arrChildren"] = nlohmann::json::array();
    expected["m_arrPrimaryBom"] = {row("柜体", "", "")};
    expected["m_arrSecondaryBom"] = {row("断路器", "M", "2")};
    EXPECT_EQ(nlohmann::json::parse(read.out), expected);
}

TEST(HexmoorInspect, BadInputGivesTheCommonExitStatuses) {
    TempFolder folder;
    EXPECT_EQ(inspect(folder, "hexmoor '" + folder.native() + "/missing.xml'").status, 1);
    EXPECT_EQ(inspect(folder, "hexmoor").status, 2);
    EXPECT_EQ(inspect(folder, "hexmoor-write", "{ not json").status, 1);
    EXPECT_EQ(inspect(folder, "hexmoor-write", "[1, 2]").status, 1);
    EXPECT_EQ(inspect(folder, "hexmoor-write", R"({"m_arrChildren": 5})").status, 1);
    EXPECT_EQ(inspect(folder, "hexmoor-write", R"({"m_strName": {"a": 1}})").status, 1);

    // A file that is there but no document: the reader's box on standard error, the empty node as JSON.
    folder.writeFile("Hexmoor.xml", "<Hexmoor><Node Name=");
    const InspectRun read = inspect(folder, "hexmoor '" + folder.native() + "/Hexmoor.xml'");
    EXPECT_EQ(read.status, 0);
    EXPECT_NE(read.err.find("[Corvane] Invalid pointer"), std::string::npos);
    EXPECT_EQ(nlohmann::json::parse(read.out)["m_strName"], "");
}
