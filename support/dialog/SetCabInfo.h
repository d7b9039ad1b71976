// CSetCabInfo: the dialog in which the person gives every device of a project its cabinet number, name,
// model and size before the project goes to the cloud. One row per device of the root's m_arrCabinets;
// the cabinet numbers offered come from the circuits of the last scan (g_arrCircuits).
#pragma once

#include "project/ProjectTree.h"
#include "support/dialog/SortedListCtrl.h"

// The dialog's template (dialog units) and its texts.
struct QxCabInfoTemplate {
    static constexpr int kTemplateId = 105;
    static constexpr int kListId = 110;
    static constexpr int kListWidthUnits = 338;
    static constexpr int kListHeightUnits = 115;
    static constexpr const char16_t* kCaption = u"屏柜属性设置";
    static constexpr const char16_t* kListLabel = u"屏柜列表";
    static constexpr const char16_t* kOkText = u"确定";
    static constexpr const char16_t* kCancelText = u"取消";
    static constexpr const char16_t* kHeadings[5] = {u"设备名称", u"柜编号", u"柜名称", u"柜型号", u"柜体尺寸"};
};

class QX_API CSetCabInfo : public CAdUiBaseDialog {
public:
    explicit CSetCabInfo(HWND parent = nullptr, HINSTANCE resources = nullptr);

    bool OnInitDialog() override;
    // Checks every row and writes the four cabinet fields back; a failed check keeps the dialog open.
    void OnOK() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    CSortedListCtrl& GetListCtrl() { return m_listCtrl; }

    CSortedListCtrl m_listCtrl{false, false};
    // The project's root node; the caller sets it before DoModal and keeps it.
    HMProjectTree_INFO* m_pProjectTree = nullptr;

private:
    void prepareList();
    void fillList();
    void autoFill(int row);
};

// The cabinet number a circuit number stands for: "A1(W2)" gives "A1"; a number that opens with "(" or has
// no ")" behind its first "(" counts whole.
QX_API CString QxCabinetNumberBase(const CString& circuitNumber);
// The cabinet numbers of the circuits of the last scan, each once, in the order first seen.
QX_API CStringArray QxCabinetNumberChoices();
