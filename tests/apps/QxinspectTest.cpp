// qxinspect run as a tool runs it: what it shows of its input and of itself.
#include "ProjectVersion.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/wait.h>

namespace {

struct InspectRun {
    int status = -1;
    std::string out;
};

InspectRun qxinspect(const std::string& args) {
    const std::string command = std::string(QX_BINARY_DIR) + "/bin/qxinspect " + args + " 2>/dev/null";
    InspectRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return run;
    std::array<char, 4096> buffer;
    size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.out.append(buffer.data(), n);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
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
