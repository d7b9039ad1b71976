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
void UnregisterModuleCommands();
