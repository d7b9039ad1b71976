// The boundary between a command or export and the host.
#include "module/commands/Guarded.h"

#include "platform/host/HostOutput.h"

void ReportUnexpectedError(const CString& name, const char* what) {
    acutPrintf(u"\n%s stopped on an unexpected error: %s\n", name, CString(what));
}

void RunGuarded(const CString& name, void (*body)()) {
    const CDrawingReadScope reads;
    try {
        body();
    } catch (const std::exception& error) {
        ReportUnexpectedError(name, error.what());
    } catch (...) {
        ReportUnexpectedError(name, "unknown error");
    }
}
