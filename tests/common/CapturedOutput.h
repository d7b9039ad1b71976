// Records what the host printed and which boxes it showed, for the length of one test.
#pragma once

#include "platform/host/HostOutput.h"

#include <vector>

class CapturedOutput final : public IHostOutput {
public:
    struct Box {
        CString text;
        CString caption;
        unsigned style;
    };

    CapturedOutput() { SetHostOutput(this); }
    ~CapturedOutput() override { SetHostOutput(nullptr); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    void Print(const CString& text) override { printed += text; }
    void MessageBox(const CString& text, const CString& caption, unsigned style) override {
        boxes.push_back({text, caption, style});
    }

    CString printed;
    std::vector<Box> boxes;
};
