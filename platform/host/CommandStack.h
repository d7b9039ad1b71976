// The host's command stack: modules register named commands in groups, the host looks them up and runs them.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

#include <functional>
#include <optional>
#include <vector>

using AcRxFunctionPtr = void (*)();

enum : int { ACRX_CMD_MODAL = 1 };

struct AcEdCommand {
    CString group;
    CString globalName;
    CString localName;
    int flags = ACRX_CMD_MODAL;
    std::function<void()> handler;
};

class QX_API AcEdCommandStack {
public:
    // False when a command of that global name is already in the group.
    bool addCommand(const CString& group, const CString& globalName, const CString& localName, int flags,
                    std::function<void()> handler);
    bool removeCmd(const CString& group, const CString& globalName);
    void removeGroup(const CString& group);

    // By local or global name, ignoring case; a leading "_" asks for the global name.
    std::optional<AcEdCommand> lookup(const CString& name) const;
    // The commands in registration order.
    const std::vector<AcEdCommand>& commands() const { return m_commands; }
    std::vector<AcEdCommand> commandsOfGroup(const CString& group) const;

private:
    std::vector<AcEdCommand> m_commands;
};

// The one command stack of the process.
QX_API AcEdCommandStack* acedRegCmds();
