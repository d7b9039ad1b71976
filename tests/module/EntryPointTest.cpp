#include "ModuleFixture.h"
#include "module/CommandTable.h"
#include "platform/host/ArxApp.h"
#include "platform/host/CommandStack.h"

#include <dlfcn.h>
#include <stdexcept>

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);

using EntryPoint = ModuleFixture;

namespace {

// The cloud library fails as the module loads: the client cannot be made.
void failingCloudAtLoad() {
    SetHexmoorBackendFactory([]() -> std::unique_ptr<IHexmoorBackend> { throw std::runtime_error("no cloud library"); });
}

} // namespace

TEST_F(EntryPoint, LoadRegistersSevenCommandsInTableOrderUnloadRemovesThemAndAFailedLoadLeavesNone) {
    // Unknown message codes call nothing.
    for (const int code : {16, 4000}) EXPECT_EQ(acrxEntryPoint(static_cast<AcRx::AppMsgCode>(code), nullptr), AcRx::kRetOK);
    EXPECT_EQ(g_pHexmoorClient, nullptr);
    EXPECT_TRUE(acedRegCmds()->commandsOfGroup(kCommandGroup).empty());

    ASSERT_EQ(acrxEntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
    const auto commands = acedRegCmds()->commandsOfGroup(kCommandGroup);
    std::vector<std::u16string> names;
    for (const auto& c : commands) names.push_back(c.localName.str());
    EXPECT_EQ(names, (std::vector<std::u16string>{u"HMLogin", u"HMXmCreate", u"HMBomSubmit", u"HMItmSubmit",
                                                  u"HMBomCmp", u"HMTest", u"HMUpdate"}));
    EXPECT_EQ(commands[0].globalName, CString(u"_HMLogin"));
    EXPECT_EQ(commands[0].flags, ACRX_CMD_MODAL);
    ASSERT_NE(g_pHexmoorClient, nullptr);
    // HMTest asks for one cabinet without logging in.
    acedRegCmds()->lookup(u"HMTest")->handler();
    EXPECT_EQ(cloud().oneCabCalls, 1);
    EXPECT_EQ(cloud().autoLoginCalls + cloud().loginCalls, 0);

    ASSERT_EQ(acrxEntryPoint(AcRx::kUnloadAppMsg, nullptr), AcRx::kRetOK);
    EXPECT_TRUE(acedRegCmds()->commandsOfGroup(kCommandGroup).empty());
    EXPECT_EQ(g_pHexmoorClient, nullptr);

    // A failed load leaves no command and no client behind.
    failingCloudAtLoad();
    EXPECT_EQ(acrxEntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetError);
    EXPECT_TRUE(output.printed.Contains(u"no cloud library"));
    EXPECT_TRUE(acedRegCmds()->commandsOfGroup(kCommandGroup).empty());
    EXPECT_EQ(g_pHexmoorClient, nullptr);
}

// The built library opened with dlopen as the host opens it, on a temporary install folder.
class BuiltModule : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(handle, nullptr) << ::dlerror();
        entry = reinterpret_cast<AcRxEntryPointFn>(::dlsym(handle, "acrxEntryPoint"));
        ASSERT_NE(entry, nullptr);
        SetCorvaneInstallDirOverride(install.logic());
    }
    void TearDown() override {
        SetHexmoorBackendFactory({});
        SetCorvaneInstallDirOverride(CString());
        if (handle) ::dlclose(handle);
    }

    void* handle = ::dlopen((std::string(QX_BINARY_DIR) + "/lib/libQxHMInterFace.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    AcRxEntryPointFn entry = nullptr;
    TempFolder install;
};

TEST_F(BuiltModule, ExportsItsEntryPointsUnderPlainNamesAndAFailedLoadLeavesNothingInTheHostsCommandTable) {
    auto version = reinterpret_cast<AcRxGetApiVersionFn>(::dlsym(handle, "acrxGetApiVersion"));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version(), 0x120000);
    // The module's commands land in the host's one command stack, shared through the core library.
    ScriptedCloud cloud;
    entry(AcRx::kInitAppMsg, nullptr);
    EXPECT_TRUE(acedRegCmds()->lookup(u"_HMUpdate").has_value());
    entry(AcRx::kUnloadAppMsg, nullptr);
    EXPECT_FALSE(acedRegCmds()->lookup(u"HMUpdate").has_value());

    // Refused at load, then closed: commands left in the host's table would run code of a closed library,
    // and the host would crash on its next command or at its exit.
    CapturedOutput output;
    failingCloudAtLoad();
    const size_t hostCommands = acedRegCmds()->commands().size();
    EXPECT_EQ(entry(AcRx::kInitAppMsg, nullptr), AcRx::kRetError);
    EXPECT_TRUE(output.printed.Contains(u"acrxEntryPoint stopped on an unexpected error: no cloud library"));
    EXPECT_EQ(acedRegCmds()->commands().size(), hostCommands);
    EXPECT_FALSE(acedRegCmds()->lookup(u"HMLogin").has_value());
}

TEST_F(EntryPoint, CommandsWithoutASessionSaySoAndDoNothing) {
    RegisterModuleCommands();
    for (const auto& command : acedRegCmds()->commandsOfGroup(kCommandGroup)) command.handler();
    UnregisterModuleCommands();
    EXPECT_EQ(cloud().loginCalls + cloud().autoLoginCalls + cloud().oneCabCalls, 0);
    EXPECT_TRUE(output.printed.Contains(u"HMLogin: the module's session is not running."));
    EXPECT_TRUE(output.printed.Contains(u"HMUpdate: the module's session is not running."));
    EXPECT_FALSE(g_bForceLogin);
}
