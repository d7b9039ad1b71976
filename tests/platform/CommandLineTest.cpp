#include "platform/host/CommandLine.h"
#include "platform/host/CommandStack.h"
#include "platform/host/Documents.h"

#include <gtest/gtest.h>

namespace {

class HostCommandLine : public ::testing::Test {
protected:
    ~HostCommandLine() override { acedRegCmds()->removeGroup(u"TEST"); }

    void add(const char16_t* name, std::function<void()> body) {
        acedRegCmds()->addCommand(u"TEST", CString(u"_") + name, name, ACRX_CMD_MODAL, std::move(body));
    }

    std::vector<CString> ran;
    std::vector<CString> unknown;
    std::function<void(const CString&)> tellUnknown = [this](const CString& name) { unknown.push_back(name); };
};

} // namespace

TEST_F(HostCommandLine, QueuedStringsRunAfterTheirCommandAndUnknownNamesAreTold) {
    add(u"first", [this] {
        ran.push_back(u"first");
        acDocManagerPtr()->sendStringToExecute(acDocManagerPtr()->curDocument(), u"second\n", false, true, true);
    });
    add(u"second", [this] { ran.push_back(u"second"); });
    add(u"third", [this] { ran.push_back(u"third"); });

    EXPECT_TRUE(RunHostCommandLine(u"  first\tthird ", tellUnknown));
    EXPECT_EQ(ran, (std::vector<CString>{u"first", u"second", u"third"}));
    EXPECT_TRUE(unknown.empty());

    // Unknown names are told; only the person's own fail the line.
    add(u"queues", [] { acDocManagerPtr()->sendStringToExecute(acDocManagerPtr()->curDocument(), u"nosuch\n"); });
    EXPECT_TRUE(RunHostCommandLine(u"queues", tellUnknown));
    EXPECT_FALSE(RunHostCommandLine(u"queues typo", tellUnknown));
    EXPECT_EQ(unknown, (std::vector<CString>{u"nosuch", u"nosuch", u"typo"}));
}
