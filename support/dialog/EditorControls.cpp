// The editors of the editing list.
#include "support/dialog/EditorControls.h"

void CMyListCtrlEdit::SetWindowText(const CString& text) {
    m_text = text;
    m_list.SendMessage(QXLM_EDIT_CHANGED, reinterpret_cast<WPARAM>(GetSafeHwnd()),
                       reinterpret_cast<LPARAM>(GetSafeHwnd()));
}

void CMyListCtrlEdit::UserTypes(const CString& text) {
    m_allSelected = false;
    SetWindowText(text);
}

void CMyListCtrlEdit::UserPressesKey(int keyCode) {
    const WPARAM self = reinterpret_cast<WPARAM>(GetSafeHwnd());
    if (keyCode == VK_RETURN) m_list.SendMessage(QXLM_EDIT_ENTER, self, keyCode);
    else if (keyCode == VK_UP) m_list.SendMessage(QXLM_EDIT_UP, self, keyCode);
    else if (keyCode == VK_DOWN) m_list.SendMessage(QXLM_EDIT_DOWN, self, keyCode);
}

void CMyListCtrlEdit::KillFocus() {
    SetFocus(false);
    m_list.SendMessage(QXLM_EDIT_KILLFOCUS, reinterpret_cast<WPARAM>(GetSafeHwnd()), 0);
}

void CListCtrlComboBox::ResetContent() {
    m_entries.RemoveAll();
    m_currentEntry = -1;
}

int CListCtrlComboBox::AddString(const CString& entry) { return m_entries.Add(entry); }

CString CListCtrlComboBox::GetLBText(int index) const {
    if (index < 0 || index >= m_entries.GetSize()) return {};
    return m_entries[index];
}

void CListCtrlComboBox::UserTypes(const CString& text) {
    m_text = text;
    CString trimmed = text;
    if (trimmed.Trim().IsEmpty()) return;
    const WPARAM self = reinterpret_cast<WPARAM>(GetSafeHwnd());
    m_list.SendMessage(QXLM_COMBO_TYPED, self, static_cast<LPARAM>(self));
}

void CListCtrlComboBox::UserPicks(int index) {
    if (index < 0 || index >= m_entries.GetSize()) return;
    m_currentEntry = index;
    const WPARAM self = reinterpret_cast<WPARAM>(GetSafeHwnd());
    m_list.SendMessage(QXLM_COMBO_PICKED, self, static_cast<LPARAM>(self));
    m_text = m_entries[index];
}
