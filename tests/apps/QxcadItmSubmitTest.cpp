// HMItmSubmit in qxcad on the demo's sample project, the cabinet dialog answered by piped lines as a script
// answers it: OK sends the project to the embedded centre, CANCEL or the end of input sends nothing.
#include "Qxcad.h"

#include <cstdlib>

namespace {

using QxcadRun = ShellRun;

class QxcadItmSubmit : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string command = "/usr/bin/python3 '" + std::string(QX_SOURCE_DIR) +
                                    "/samples/make_sample_project.py' '" + dir.native() + "/corvane/My Projects' '" +
                                    dir.native() + "/corvane' >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_EQ(RunQxcad(dir, "HMLogin", "acme\\nann\\nsecret\\n").status, 0);
    }

    std::string project(const std::string& relative) const {
        return "corvane/My Projects/华东变电站/" + relative;
    }

    TempFolder dir;
};

} // namespace

TEST_F(QxcadItmSubmit, OkSendsTheProjectWithTheNamesTypedIntoTheDialog) {
    const QxcadRun run = RunQxcad(dir, "HMItmSubmit HMBomCmp", "2 3 Feeder-2\\n3 5 800x600\\nOK\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("[Corvane] Corvane新建项目提交成功！"), std::string::npos) << run.out;
    EXPECT_NE(dir.readFile("err.txt").find("屏柜属性设置"), std::string::npos);  // the dialog was shown
    EXPECT_NE(dir.readFile(project("K02/K02.prj")).find("Feeder-2"), std::string::npos);
    EXPECT_NE(dir.readFile(project("K03/K03.prj")).find("800x600"), std::string::npos);
    EXPECT_TRUE(dir.exists(project("Hexmoor.xml")));
    EXPECT_TRUE(dir.exists(project("K01/Hexmoor.xml")));
    // The centre now holds the three devices with the rows the drawings give.
    EXPECT_NE(run.out.find("BOM comparison: 3 devices, 0 differ from the centre."), std::string::npos) << run.out;
}

TEST_F(QxcadItmSubmit, CancelOrTheEndOfInputSendsNothingAndLeavesThePrjFiles) {
    const std::string before = dir.readFile(project("K02/K02.prj"));
    QxcadRun run = RunQxcad(dir, "HMItmSubmit", "2 3 Feeder-2\\nCANCEL\\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find("[Corvane]"), std::string::npos) << run.out;
    run = RunQxcad(dir, "HMItmSubmit", "2 3 Feeder-2\\n");
    EXPECT_EQ(run.out.find("[Corvane]"), std::string::npos) << run.out;
    EXPECT_EQ(dir.readFile(project("K02/K02.prj")), before);
    EXPECT_FALSE(dir.exists(project("Hexmoor.xml")));
}

TEST_F(QxcadItmSubmit, AFailedCheckKeepsTheDialogForTheNextLines) {
    const QxcadRun run = RunQxcad(dir, "HMItmSubmit", "1 2 K.1\\nOK\\n1 2 K01\\nOK\\n");
    EXPECT_NE(run.out.find("[Corvane] 设备 K01 柜编号属性有非法字符存在！"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("[Corvane] Corvane新建项目提交成功！"), std::string::npos);
}
