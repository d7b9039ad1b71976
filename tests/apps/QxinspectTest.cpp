// qxinspect run as a tool runs it: what it shows of its input and of itself.
#include "common/ShellRun.h"
#include "ProjectVersion.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using InspectRun = ShellRun;

InspectRun qxinspect(const std::string& args) {
    return RunShellCommand(std::string(QX_BINARY_DIR) + "/bin/qxinspect " + args + " 2>/dev/null");
}

} // namespace

TEST(Qxinspect, NamesTheDrawingByItsPathInTheMachinesOwnForm) {
    const std::string file = std::string(QX_TEST_DATA_DIR) + "/dxf/sample_r2018.dxf";
    const InspectRun run = qxinspect("drawing '" + file + "'");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(nlohmann::json::parse(run.out)["file"], file);
}

TEST(Qxinspect, PrintsItsVersion) {
    const InspectRun run = qxinspect("--version");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, std::string("qxinspect ") + ProjectVersion() + "\n");
}
