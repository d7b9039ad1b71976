// How the repository speaks to the person.
#include "repository/RepositoryMessages.h"

#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"

void ShowRepositoryBox(const CString& text, unsigned icon) { MessageBoxW(nullptr, text, u"Corvane", icon); }

bool AskRepositoryYesNo(const CString& text) { return HostPrompts().AskYesNo(text).value_or(false); }
