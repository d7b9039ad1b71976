// Loads a module the way the CAD host does.
#include "ModuleLoader.h"

#include <dlfcn.h>
#include <filesystem>

ModuleLoader::ModuleLoader(const std::string& path) {
    m_handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
        const char* reason = ::dlerror();
        m_error = reason ? reason : "cannot be opened";
        return;
    }
    auto entryPoint = reinterpret_cast<AcRxEntryPointFn>(::dlsym(m_handle, "acrxEntryPoint"));
    auto apiVersion = reinterpret_cast<AcRxGetApiVersionFn>(::dlsym(m_handle, "acrxGetApiVersion"));
    if (!entryPoint || !apiVersion) {
        m_error = "it exports no acrxEntryPoint or acrxGetApiVersion";
        return;
    }
    m_apiVersion = apiVersion();
    if (m_apiVersion != kAcRxApiVersion) {
        m_error = "it was built for another API generation";
        return;
    }
    if (entryPoint(AcRx::kInitAppMsg, nullptr) != AcRx::kRetOK) {
        m_error = "it refused the load message";
        return;
    }
    m_entryPoint = entryPoint;
}

ModuleLoader::~ModuleLoader() {
    if (m_entryPoint) m_entryPoint(AcRx::kUnloadAppMsg, nullptr);
    if (m_handle) ::dlclose(m_handle);
}

std::string DefaultModulePath(const char* argv0) {
    std::error_code ec;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) self = std::filesystem::absolute(argv0, ec);
    const std::filesystem::path folder = self.parent_path();
    const char* name = "libQxHMInterFace.so";
    for (const auto& candidate : {folder / ".." / "lib" / name, folder / name})
        if (std::filesystem::exists(candidate, ec)) return candidate.lexically_normal().string();
    return (folder / ".." / "lib" / name).lexically_normal().string();
}
