// The host's prompt service: the four kinds of question a module or a stand-in library may ask.
// An empty optional means the person cancelled (or the input ended).
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

#include <optional>

class QX_API IPromptService {
public:
    virtual ~IPromptService();
    virtual std::optional<CString> AskText(const CString& question) = 0;
    // The answer is never echoed.
    virtual std::optional<CString> AskSecret(const CString& question) = 0;
    virtual std::optional<bool> AskYesNo(const CString& question) = 0;
    // The index of the chosen option, from 0.
    virtual std::optional<int> AskChoice(const CString& question, const CStringArray& options) = 0;
};

// The service in force: the console by default (questions on standard error, answers from standard input).
QX_API IPromptService& HostPrompts();
// Installs a service; null restores the console. The caller keeps ownership.
QX_API void SetHostPrompts(IPromptService* service);
// Answers every yes/no question of the console without asking (qxcad --yes / --no); nullopt asks again.
QX_API void SetConsoleYesNoAnswer(std::optional<bool> answer);
