// The module's commands: one group, seven entries, registered in table order.
#pragma once

#include "support/CString.h"

#include <vector>

inline constexpr const char16_t* kCommandGroup = u"QxHMInterFace";

struct ModuleCommand {
    const char16_t* globalName;
    const char16_t* localName;
    void (*handler)();
};

const std::vector<ModuleCommand>& ModuleCommands();
void RegisterModuleCommands();
// What a registered command runs: nothing but a line when the session is not there, else the handler
// behind the guard that keeps exceptions out of the host.
void RunModuleCommand(const CString& name, void (*handler)());
void UnregisterModuleCommands();
