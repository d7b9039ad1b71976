// Loads a module the way the CAD host does: dlopen, the load message at start, the unload message at the end.
#pragma once

#include "platform/host/ArxApp.h"

#include <string>

class ModuleLoader {
public:
    // Loads the module and sends it the load message; check loaded() and error().
    explicit ModuleLoader(const std::string& path);
    // Sends the unload message and closes the module.
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    bool loaded() const { return m_entryPoint != nullptr; }
    const std::string& error() const { return m_error; }
    int apiVersion() const { return m_apiVersion; }

private:
    void* m_handle = nullptr;
    AcRxEntryPointFn m_entryPoint = nullptr;
    int m_apiVersion = 0;
    std::string m_error;
};

// libQxHMInterFace.so beside qxcad's own library folder (../lib), or in the same folder.
std::string DefaultModulePath(const char* argv0);
