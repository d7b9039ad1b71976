// The module's resource handle.
#include "module/ModuleResources.h"

#include <dlfcn.h>

HINSTANCE HMModuleResourceHandle() {
    static const HINSTANCE handle = [] {
        Dl_info info{};
        if (::dladdr(reinterpret_cast<void*>(&HMModuleResourceHandle), &info) == 0) return HINSTANCE{};
        return static_cast<HINSTANCE>(info.dli_fbase);
    }();
    return handle;
}
