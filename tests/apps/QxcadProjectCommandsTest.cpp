// The project commands in qxcad, as a person runs them: they log in silently from the stored login and say
// plainly why they stop when there is nothing to work on.
#include "Qxcad.h"

using QxcadRun = ShellRun;

TEST(QxcadProjectCommands, WithoutAProjectTheCloudKnowsEachCommandSaysSoAndTheRunSucceeds) {
    TempFolder dir;
    ASSERT_EQ(RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n").status, 0);
    dir.writeFile("corvane/Data/recent.dat", "");
    const QxcadRun run = RunQxcad(dir, "HMBomSubmit HMBomCmp HMUpdate HMXmCreate");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法提交明细！请选择提交项目。"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法进行比对！"), std::string::npos);
    EXPECT_NE(run.out.find("项目的Hexmoor相关信息不存在，无法从Hexmoor调用明细！"), std::string::npos);
    // The centre has no project to make: nothing is made and the project manager is not called.
    EXPECT_NE(run.out.find("has no project"), std::string::npos);
    EXPECT_EQ(run.out.find("***"), std::string::npos);
    EXPECT_EQ(dir.readFile("corvane/Data/recent.dat"), "");
}
