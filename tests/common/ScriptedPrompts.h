// Answers the host's questions from a list a test writes; a missing answer cancels, as an end of input does.
#pragma once

#include "platform/host/Prompts.h"

#include <deque>
#include <vector>

class ScriptedPrompts final : public IPromptService {
public:
    ScriptedPrompts() { SetHostPrompts(this); }
    ~ScriptedPrompts() override { SetHostPrompts(nullptr); }
    ScriptedPrompts(const ScriptedPrompts&) = delete;
    ScriptedPrompts& operator=(const ScriptedPrompts&) = delete;

    std::optional<CString> AskText(const CString& question) override { return next(question); }
    std::optional<CString> AskSecret(const CString& question) override {
        secretQuestions.push_back(question);
        return next(question);
    }
    std::optional<bool> AskYesNo(const CString& question) override {
        const auto answer = next(question);
        if (!answer) return std::nullopt;
        return *answer == u"y";
    }
    std::optional<int> AskChoice(const CString& question, const CStringArray&) override {
        const auto answer = next(question);
        if (!answer) return std::nullopt;
        return std::stoi(answer->ToUtf8());
    }

    std::deque<CString> answers;
    std::vector<CString> questions;
    std::vector<CString> secretQuestions;

private:
    std::optional<CString> next(const CString& question) {
        questions.push_back(question);
        if (answers.empty()) return std::nullopt;
        CString answer = answers.front();
        answers.pop_front();
        return answer;
    }
};
