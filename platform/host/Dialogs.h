// The host's dialogs: the base of a modal dialog (AutoCAD's CAdUiBaseDialog), the messages that windows send
// each other, and the dialog service that shows a dialog to the person. qxcad shows dialogs on the terminal;
// tests install a scripted service. Without one installed, a dialog ends as cancelled.
#pragma once

#include "platform/host/HostOutput.h"

#include <cstdint>
#include <deque>

using UINT = unsigned;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using INT_PTR = std::intptr_t;
using HINSTANCE = void*;

enum : int { IDCANCEL = 2 };
enum : UINT {
    WM_USER = 0x0400,
    // AutoCAD asks whether a dialog keeps the focus.
    WM_ACAD_KEEPFOCUS = 0x7101,
};

// A window as far as messages go: sent messages are handled at once, posted ones wait in its queue until
// the window system delivers them.
class QX_API CMessageWnd {
public:
    CMessageWnd() = default;
    virtual ~CMessageWnd();
    CMessageWnd(const CMessageWnd&) = delete;
    CMessageWnd& operator=(const CMessageWnd&) = delete;

    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) { return WindowProc(message, wParam, lParam); }
    void PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    // Hands every waiting posted message to WindowProc, oldest first, including those posted meanwhile.
    void DeliverPostedMessages();
    HWND GetSafeHwnd() { return this; }

private:
    struct Posted {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    std::deque<Posted> m_posted;
};

class QX_API CAdUiBaseDialog : public CMessageWnd {
public:
    explicit CAdUiBaseDialog(HWND parent = nullptr, HINSTANCE resources = nullptr);

    // Initialises the dialog, lets the host's dialog service run it, and gives the result of EndDialog:
    // IDOK, IDCANCEL, or IDCANCEL when the service let the dialog go without ending it.
    INT_PTR DoModal();
    virtual bool OnInitDialog() { return true; }
    // The buttons: OK and Cancel end the dialog unless a subclass keeps it open.
    virtual void OnOK() { EndDialog(IDOK); }
    virtual void OnCancel() { EndDialog(IDCANCEL); }
    void EndDialog(int result);
    bool HasEnded() const { return m_ended; }

private:
    bool m_ended = false;
    int m_result = IDCANCEL;
};

// Runs a dialog after OnInitDialog: shows it and passes the person's actions to it until it has ended (or
// the person is gone).
class QX_API IDialogService {
public:
    virtual ~IDialogService();
    virtual void RunModal(CAdUiBaseDialog& dialog) = 0;
};

// The service in force; the default one shows nothing, so every dialog ends as cancelled.
QX_API IDialogService& HostDialogs();
// Installs a service; null restores the default. The caller keeps ownership.
QX_API void SetHostDialogs(IDialogService* service);
