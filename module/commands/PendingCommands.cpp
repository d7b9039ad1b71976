// The project command whose work is not in this build yet. It is a cloud entry, so it logs in first, then
// says plainly that it cannot run.
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "platform/host/HostOutput.h"

void HMItmSubmit() {
    if (!EnsureHMLogin()) return;
    acutPrintf(u"\nHMItmSubmit: this command is not available in this build yet.\n");
}
