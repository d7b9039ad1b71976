// The host's command stack.
#include "platform/host/CommandStack.h"

#include <algorithm>

bool AcEdCommandStack::addCommand(const CString& group, const CString& globalName, const CString& localName,
                                  int flags, std::function<void()> handler) {
    const bool taken = std::any_of(m_commands.begin(), m_commands.end(), [&](const AcEdCommand& c) {
        return c.group.EqualsNoCase(group) && c.globalName.EqualsNoCase(globalName);
    });
    if (taken || !handler) return false;
    m_commands.push_back({group, globalName, localName, flags, std::move(handler)});
    return true;
}

bool AcEdCommandStack::removeCmd(const CString& group, const CString& globalName) {
    const auto before = m_commands.size();
    std::erase_if(m_commands, [&](const AcEdCommand& c) {
        return c.group.EqualsNoCase(group) && c.globalName.EqualsNoCase(globalName);
    });
    return m_commands.size() != before;
}

void AcEdCommandStack::removeGroup(const CString& group) {
    std::erase_if(m_commands, [&](const AcEdCommand& c) { return c.group.EqualsNoCase(group); });
}

std::optional<AcEdCommand> AcEdCommandStack::lookup(const CString& name) const {
    const bool global = name.StartsWith(u"_");
    for (const AcEdCommand& c : m_commands) {
        if (global ? c.globalName.EqualsNoCase(name) || c.globalName.EqualsNoCase(name.Mid(1))
                   : c.localName.EqualsNoCase(name) || c.globalName.EqualsNoCase(name))
            return c;
    }
    return std::nullopt;
}

std::vector<AcEdCommand> AcEdCommandStack::commandsOfGroup(const CString& group) const {
    std::vector<AcEdCommand> found;
    for (const AcEdCommand& c : m_commands)
        if (c.group.EqualsNoCase(group)) found.push_back(c);
    return found;
}

AcEdCommandStack* acedRegCmds() {
    static AcEdCommandStack stack;
    return &stack;
}
