// What the host shows: the console output, and the switch to another output.
#include "platform/host/HostOutput.h"

#include <cstdio>

namespace {

class ConsoleOutput final : public IHostOutput {
public:
    void Print(const CString& text) override {
        const std::string bytes = text.ToUtf8();
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        std::fflush(stdout);
    }
    void MessageBox(const CString& text, const CString& caption, unsigned) override {
        std::FILE* stream = m_boxesToStderr ? stderr : stdout;
        std::string line = "[" + caption.ToUtf8() + "] " + text.ToUtf8();
        if (line.empty() || line.back() != '\n') line += '\n';
        std::fflush(stdout);
        std::fwrite(line.data(), 1, line.size(), stream);
        std::fflush(stream);
    }
    bool m_boxesToStderr = false;
};

ConsoleOutput& console() {
    static ConsoleOutput output;
    return output;
}

IHostOutput*& installed() {
    static IHostOutput* output = nullptr;
    return output;
}

} // namespace

IHostOutput::~IHostOutput() = default;

IHostOutput& HostOutput() { return installed() ? *installed() : console(); }

void SetHostOutput(IHostOutput* output) { installed() = output; }

void SetConsoleBoxesToStderr(bool toStderr) { console().m_boxesToStderr = toStderr; }

void acutPrintfText(const CString& text) { HostOutput().Print(text); }

int MessageBoxW(HWND, const CString& text, const CString& caption, unsigned style) {
    HostOutput().MessageBox(text, caption, style);
    return IDOK;
}

int AfxMessageBox(const CString& text, unsigned style) { return MessageBoxW(nullptr, text, u"Corvane", style); }
