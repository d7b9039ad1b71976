// The host's own commands.
#include "HostCommands.h"

#include "platform/host/CommandStack.h"
#include "platform/host/HostOutput.h"

namespace {

const char16_t* const kHostGroup = u"ACAD";

void help() {
    acutPrintf(u"\nCommands:\n");
    for (const AcEdCommand& command : acedRegCmds()->commands())
        acutPrintf(u"  %-14s (%s)\n", command.localName, command.group);
    acutPrintf(u"  %-14s (host)\n", CString(u"QUIT"));
}

} // namespace

void RegisterHostCommands() {
    acedRegCmds()->addCommand(kHostGroup, u"_HELP", u"HELP", ACRX_CMD_MODAL, help);
    acedRegCmds()->addCommand(kHostGroup, u"_XMMANAGE", u"xmmanage", ACRX_CMD_MODAL, ShowProjectManager);
}
