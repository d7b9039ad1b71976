// The host's dialogs and the switch to a dialog service.
#include "platform/host/Dialogs.h"

namespace {

class NoDialogs final : public IDialogService {
public:
    void RunModal(CAdUiBaseDialog&) override {}
};

IDialogService*& installed() {
    static IDialogService* service = nullptr;
    return service;
}

} // namespace

CMessageWnd::~CMessageWnd() = default;

LRESULT CMessageWnd::WindowProc(UINT, WPARAM, LPARAM) { return 0; }

void CMessageWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    m_posted.push_back({message, wParam, lParam});
}

void CMessageWnd::DeliverPostedMessages() {
    while (!m_posted.empty()) {
        const Posted next = m_posted.front();
        m_posted.pop_front();
        WindowProc(next.message, next.wParam, next.lParam);
    }
}

CAdUiBaseDialog::CAdUiBaseDialog(HWND, HINSTANCE) {}

INT_PTR CAdUiBaseDialog::DoModal() {
    m_ended = false;
    m_result = IDCANCEL;
    OnInitDialog();
    HostDialogs().RunModal(*this);
    return m_ended ? m_result : IDCANCEL;
}

void CAdUiBaseDialog::EndDialog(int result) {
    m_ended = true;
    m_result = result;
}

IDialogService::~IDialogService() = default;

IDialogService& HostDialogs() {
    static NoDialogs none;
    return installed() ? *installed() : none;
}

void SetHostDialogs(IDialogService* service) { installed() = service; }
