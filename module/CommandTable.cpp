// The module's commands and their registration with the host's command stack.
#include "module/CommandTable.h"

#include "module/commands/Commands.h"
#include "module/commands/Guarded.h"
#include "module/Session.h"
#include "platform/host/CommandStack.h"
#include "platform/host/HostOutput.h"

const std::vector<ModuleCommand>& ModuleCommands() {
    static const std::vector<ModuleCommand> table = {
        {u"_HMLogin", u"HMLogin", HMLogin},
        {u"_HMXmCreate", u"HMXmCreate", HMXmCreate},
        {u"_HMBomSubmit", u"HMBomSubmit", HMBomSubmit},
        {u"_HMItmSubmit", u"HMItmSubmit", HMItmSubmit},
        {u"_HMBomCmp", u"HMBomCmp", HMBomCmp},
        {u"_HMTest", u"HMTest", HMTest},
        {u"_HMUpdate", u"HMUpdate", HMUpdate},
    };
    return table;
}

void RegisterModuleCommands() {
    for (const ModuleCommand& command : ModuleCommands()) {
        const CString name = command.localName;
        auto handler = command.handler;
        acedRegCmds()->addCommand(kCommandGroup, command.globalName, command.localName, ACRX_CMD_MODAL,
                                  [name, handler] { RunModuleCommand(name, handler); });
    }
}

void RunModuleCommand(const CString& name, void (*handler)()) {
    if (!g_pHexmoorClient) {
        acutPrintf(u"\n%s: the module's session is not running.\n", name);
        return;
    }
    RunGuarded(name, handler);
}

void UnregisterModuleCommands() {
    for (const ModuleCommand& command : ModuleCommands()) acedRegCmds()->removeCmd(kCommandGroup, command.globalName);
}
