// The host's prompt service on the console.
#include "platform/host/Prompts.h"

#include "platform/host/ConsoleInput.h"
#include "platform/host/Progress.h"
#include "support/NumberText.h"
#include "support/PrintableText.h"

#include <iostream>

namespace {

class ConsolePrompts final : public IPromptService {
public:
    std::optional<CString> AskText(const CString& question) override {
        return answered(ReadConsoleLine(asked(question), ConsoleHistory::Answers));
    }

    std::optional<CString> AskSecret(const CString& question) override {
        const ConsoleRead secret = ReadConsoleSecret(asked(question));
        return answered(secret.end == ConsoleRead::End::Line ? std::optional<CString>(secret.text) : std::nullopt);
    }

    std::optional<bool> AskYesNo(const CString& question) override {
        if (m_fixedAnswer) return m_fixedAnswer;
        for (;;) {
            const auto answer = answered(ReadConsoleLine(asked(question + u" [y/n]"), ConsoleHistory::Answers));
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
            std::cout.flush();
            ClearProgressLine();
            std::cerr << QxPrintable(question) << '\n';
            for (int i = 0; i < options.GetSize(); ++i)
                std::cerr << "  " << (i + 1) << ") " << QxPrintable(options[i]) << '\n';
            const auto answer = answered(ReadConsoleLine(asked(u"Number"), ConsoleHistory::Answers));
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
    static CString asked(const CString& question) { return question + u": "; }

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
