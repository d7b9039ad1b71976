// The host's prompt service on the console.
#include "platform/host/Prompts.h"

#include "platform/host/ConsoleInput.h"
#include "support/NumberText.h"

#include <iostream>

namespace {

class ConsolePrompts final : public IPromptService {
public:
    std::optional<CString> AskText(const CString& question) override {
        ask(question);
        return answered(ReadConsoleLine(false));
    }

    std::optional<CString> AskSecret(const CString& question) override {
        ask(question);
        return answered(ReadConsoleLine(true));
    }

    std::optional<bool> AskYesNo(const CString& question) override {
        if (m_fixedAnswer) return m_fixedAnswer;
        for (;;) {
            ask(question + u" [y/n]");
            const auto answer = answered(ReadConsoleLine(false));
            if (!answer) return std::nullopt;
            CString word = *answer;
            word.Trim().MakeLower();
            if (word == u"y" || word == u"yes") return true;
            if (word == u"n" || word == u"no") return false;
            if (!ConsoleIsInteractive()) return std::nullopt;
        }
    }

    std::optional<int> AskChoice(const CString& question, const CStringArray& options) override {
        if (options.IsEmpty()) return std::nullopt;
        for (;;) {
            std::cerr << question << '\n';
            for (int i = 0; i < options.GetSize(); ++i) std::cerr << "  " << (i + 1) << ") " << options[i] << '\n';
            ask(u"Number");
            const auto answer = answered(ReadConsoleLine(false));
            if (!answer) return std::nullopt;
            CString text = *answer;
            text.Trim();
            const int number = QxToInt(text);
            if (number >= 1 && number <= options.GetSize() && !text.IsEmpty()) return number - 1;
            if (!ConsoleIsInteractive()) return std::nullopt;
        }
    }

    std::optional<bool> m_fixedAnswer;

private:
    static void ask(const CString& question) {
        std::cout.flush();
        std::cerr << question << ": " << std::flush;
    }

    // An answer read from a pipe is not echoed, so the question's line is ended here.
    static std::optional<CString> answered(std::optional<CString> answer) {
        if (!ConsoleIsInteractive()) std::cerr << '\n';
        return answer;
    }
};

ConsolePrompts& console() {
    static ConsolePrompts prompts;
    return prompts;
}

IPromptService*& installed() {
    static IPromptService* service = nullptr;
    return service;
}

} // namespace

IPromptService::~IPromptService() = default;

IPromptService& HostPrompts() { return installed() ? *installed() : console(); }

void SetHostPrompts(IPromptService* service) { installed() = service; }

void SetConsoleYesNoAnswer(std::optional<bool> answer) { console().m_fixedAnswer = answer; }
