#include "platform/host/CommandStack.h"

#include <gtest/gtest.h>

TEST(CommandStack, LooksUpByLocalOrGlobalNameIgnoringCaseAndRemovesByGroup) {
    AcEdCommandStack stack;
    int runs = 0;
    ASSERT_TRUE(stack.addCommand(u"G", u"_HMTest", u"HMTest", ACRX_CMD_MODAL, [&] { ++runs; }));
    EXPECT_FALSE(stack.addCommand(u"g", u"_hmtest", u"Other", ACRX_CMD_MODAL, [] {}));
    stack.lookup(u"hmtest")->handler();
    stack.lookup(u"_HMTEST")->handler();
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(stack.lookup(u"HMTes").has_value());

    // Removing by group and global name leaves the other groups' command of the same name.
    stack.addCommand(u"A", u"_X", u"X", ACRX_CMD_MODAL, [] {});
    stack.addCommand(u"B", u"_X", u"X", ACRX_CMD_MODAL, [] {});
    EXPECT_TRUE(stack.removeCmd(u"A", u"_X"));
    EXPECT_FALSE(stack.removeCmd(u"A", u"_X"));
    ASSERT_EQ(stack.commands().size(), 2u);
    EXPECT_EQ(stack.commands()[1].group, CString(u"B"));
}
