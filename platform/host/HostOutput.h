// What the host shows: text printed to the command line and message boxes. The module and the tools reach
// the person only through these calls; qxcad prints boxes on standard output, qxinspect on standard error,
// and tests install an output that records everything.
#pragma once

#include "support/Format.h"

using HWND = void*;

enum : unsigned {
    MB_OK = 0x0,
    MB_ICONERROR = 0x10,
    MB_ICONWARNING = 0x30,
    MB_ICONINFORMATION = 0x40,
};
enum : int { IDOK = 1 };

class QX_API IHostOutput {
public:
    virtual ~IHostOutput();
    virtual void Print(const CString& text) = 0;
    virtual void MessageBox(const CString& text, const CString& caption, unsigned style) = 0;
};

// The output in force: the console by default.
QX_API IHostOutput& HostOutput();
// Installs an output; null restores the console. The caller keeps ownership.
QX_API void SetHostOutput(IHostOutput* output);
// Where the console shows message boxes: standard output (qxcad), or standard error (qxinspect).
QX_API void SetConsoleBoxesToStderr(bool toStderr);

QX_API void acutPrintfText(const CString& text);
// Ends the console's current line if what was printed last did not; the host calls it between commands.
QX_API void EnsureConsoleLineEnd();

// Formats like the host's acutPrintf and prints to the command line.
template <typename... Args>
void acutPrintf(const CString& format, const Args&... args) {
    acutPrintfText(QxFormat(format, args...));
}

// Shows a box; the console answers every box with OK.
QX_API int MessageBoxW(HWND owner, const CString& text, const CString& caption, unsigned style);
// A box of the module, captioned as the application.
QX_API int AfxMessageBox(const CString& text, unsigned style = MB_OK);
