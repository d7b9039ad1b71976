// The two editors of the editing list: a one-line text editor and an editable drop-down. They hold what
// their windows hold (text, place, visibility, focus, entries) and tell the list what the person does.
#pragma once

#include "support/CArray.h"
#include "support/dialog/ListGeometry.h"
#include "support/dialog/ListMessages.h"

// State every editor window has.
class QX_API CEditorWindow : public CMessageWnd {
public:
    explicit CEditorWindow(CMessageWnd& list) : m_list(list) {}

    bool IsWindowVisible() const { return m_visible; }
    void ShowWindow(bool visible) { m_visible = visible; }
    void MoveWindow(const CRect& rect) { m_rect = rect; }
    const CRect& GetWindowRect() const { return m_rect; }
    CString GetWindowText() const { return m_text; }
    void SetFocus(bool focus) { m_focus = focus; }
    bool HasFocus() const { return m_focus; }

protected:
    CMessageWnd& m_list;
    CString m_text;

private:
    CRect m_rect;
    bool m_visible = false;
    bool m_focus = false;
};

class QX_API CMyListCtrlEdit final : public CEditorWindow {
public:
    using CEditorWindow::CEditorWindow;

    // Setting the text, by program or by the person, notifies the list of the change.
    void SetWindowText(const CString& text);
    void SetSelAll() { m_allSelected = true; }
    bool IsAllSelected() const { return m_allSelected; }
    // The person replaces the text (typing or pasting): one change notification.
    void UserTypes(const CString& text);
    // The person presses a key: Enter, Up and Down go to the list first, then the key is handled as usual.
    void UserPressesKey(int keyCode);
    void KillFocus();

private:
    bool m_allSelected = false;
};

class QX_API CListCtrlComboBox final : public CEditorWindow {
public:
    using CEditorWindow::CEditorWindow;

    // Setting the text by program notifies nobody.
    void SetWindowText(const CString& text) { m_text = text; }
    void ResetContent();
    int AddString(const CString& entry);
    int GetCount() const { return m_entries.GetSize(); }
    // Empty text for an index that names no entry.
    CString GetLBText(int index) const;
    int GetCurSel() const { return m_currentEntry; }
    const CStringArray& GetEntries() const { return m_entries; }
    // The person types in the edit part: the list hears of it only when the text, trimmed, is not empty.
    void UserTypes(const CString& text);
    // The person picks an entry: the list hears of it while the edit part still holds the old text.
    void UserPicks(int index);

private:
    CStringArray m_entries;
    int m_currentEntry = -1;
};
