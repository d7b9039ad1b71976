// What the host shows: the console output, and the switch to another output.
#include "platform/host/HostOutput.h"

#include "platform/host/Progress.h"
#include "support/PrintableText.h"

#include <cstdio>

namespace {

class ConsoleOutput final : public IHostOutput {
public:
    // What the module prints holds names from files and the centre: only its own line breaks reach the
    // terminal as such.
    void Print(const CString& text) override {
        ClearProgressLine();
        const std::string bytes = QxPrintable(text, QxLineBreaks::Keep).ToUtf8();
        std::fwrite(bytes.data(), 1, bytes.size(), stdout);
        std::fflush(stdout);
        if (!bytes.empty()) m_lineOpen = bytes.back() != '\n';
    }
    void MessageBox(const CString& text, const CString& caption, unsigned) override {
        std::FILE* stream = m_boxesToStderr ? stderr : stdout;
        ClearProgressLine();
        std::string line = "[" + QxPrintable(caption).ToUtf8() + "] " + QxPrintable(text, QxLineBreaks::Keep).ToUtf8();
        if (line.empty() || line.back() != '\n') line += '\n';
        std::fflush(stdout);
        if (stream == stdout && m_lineOpen) std::fputc('\n', stdout);
        std::fwrite(line.data(), 1, line.size(), stream);
        std::fflush(stream);
        if (stream == stdout) m_lineOpen = false;
    }
    void EndLine() {
        if (!m_lineOpen) return;
        std::fputc('\n', stdout);
        std::fflush(stdout);
        m_lineOpen = false;
    }
    bool m_boxesToStderr = false;
    bool m_lineOpen = false;
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

void EnsureConsoleLineEnd() { console().EndLine(); }

int MessageBoxW(HWND, const CString& text, const CString& caption, unsigned style) {
    HostOutput().MessageBox(text, caption, style);
    return IDOK;
}

int AfxMessageBox(const CString& text, unsigned style) { return MessageBoxW(nullptr, text, u"Corvane", style); }
