// The project commands whose work is not in this build yet. They are cloud entries, so each logs in first,
// then says plainly that it cannot run.
#include "module/Session.h"
#include "module/commands/Commands.h"
#include "platform/host/HostOutput.h"

namespace {

void notAvailable(const char16_t* name) {
    if (!EnsureHMLogin()) return;
    acutPrintf(u"\n%s: this command is not available in this build yet.\n", CString(name));
}

} // namespace

void HMXmCreate() { notAvailable(u"HMXmCreate"); }
void HMBomSubmit() { notAvailable(u"HMBomSubmit"); }
void HMItmSubmit() { notAvailable(u"HMItmSubmit"); }
void HMBomCmp() { notAvailable(u"HMBomCmp"); }
void HMUpdate() { notAvailable(u"HMUpdate"); }
