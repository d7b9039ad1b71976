// The module's resource handle: what the host makes current while a dialog of this module is shown, so
// that the dialog's template and texts are looked up in this library rather than in the host.
#pragma once

#include "platform/host/Documents.h"

// The base address of the loaded module, as a Windows module handle is.
HINSTANCE HMModuleResourceHandle();

// Makes the module's resources current while it lives; the host's come back on every way out.
class ModuleResourceScope {
public:
    ModuleResourceScope() { acDocManagerPtr()->pushResourceHandle(HMModuleResourceHandle()); }
    ~ModuleResourceScope() { acDocManagerPtr()->popResourceHandle(); }
    ModuleResourceScope(const ModuleResourceScope&) = delete;
    ModuleResourceScope& operator=(const ModuleResourceScope&) = delete;
};
