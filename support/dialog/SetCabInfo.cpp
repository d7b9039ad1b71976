// The cabinet dialog: its table, the cabinet numbers offered, the auto-fill and the checks on OK.
#include "support/dialog/SetCabInfo.h"

#include "drawing/ExtractionState.h"

namespace {

// The list's pixels from dialog units, for the dialog's font (MS Shell Dlg 8: 6 by 13 pixel base units).
int horizontalPixels(int units) { return (units * 6 + 2) / 4; }
int verticalPixels(int units) { return (units * 13 + 4) / 8; }

constexpr int kColumnCount = 5;
constexpr int kCabinetNumberColumn = 1;

} // namespace

CString QxCabinetNumberBase(const CString& circuitNumber) {
    const int open = circuitNumber.Find(u'(');
    if (open > 0 && circuitNumber.Find(u')', 1) >= 0) return circuitNumber.Left(open);
    return circuitNumber;
}

CStringArray QxCabinetNumberChoices() {
    CStringArray choices;
    for (const CCir1Attrubute* circuit : g_arrCircuits) {
        if (!circuit) continue;
        const CString base = QxCabinetNumberBase(circuit->No);
        if (choices.Find(base) < 0) choices.Add(base);
    }
    return choices;
}

CSetCabInfo::CSetCabInfo(HWND parent, HINSTANCE resources) : CAdUiBaseDialog(parent, resources) {}

bool CSetCabInfo::OnInitDialog() {
    CAdUiBaseDialog::OnInitDialog();
    prepareList();
    fillList();
    return true;
}

void CSetCabInfo::prepareList() {
    m_listCtrl.Create(this, horizontalPixels(QxCabInfoTemplate::kListWidthUnits),
                      verticalPixels(QxCabInfoTemplate::kListHeightUnits));
    m_listCtrl.SetExtendedStyle(LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP);
    const int width = (m_listCtrl.GetWindowRect().Width() - 15) / kColumnCount - 1;
    const auto& headings = QxCabInfoTemplate::kHeadings;
    m_listCtrl.InsertColumn(0, headings[0], LVCFMT_LEFT, width, 0, QX_CELL_READONLY);
    const CStringArray choices = QxCabinetNumberChoices();
    m_listCtrl.InsertColumn(1, headings[1], LVCFMT_LEFT, width, 1, QX_CELL_DROPDOWN, &choices);
    for (int column = 2; column < kColumnCount; ++column)
        m_listCtrl.InsertColumn(column, headings[column], LVCFMT_LEFT, width, column, QX_CELL_TEXT);
}

void CSetCabInfo::fillList() {
    if (!m_pProjectTree) return;
    const auto& devices = m_pProjectTree->m_arrCabinets;
    for (int index = 0; index < devices.GetSize(); ++index) {
        const HMProjectTree_INFO* device = devices[index];
        const int row = m_listCtrl.InsertItem(index, device ? device->m_strName : CString());
        if (!device) continue;
        m_listCtrl.SetItemText(row, 1, device->m_strCirNo);
        m_listCtrl.SetItemText(row, 2, device->m_strCirName);
        m_listCtrl.SetItemText(row, 3, device->m_strCirType);
        m_listCtrl.SetItemText(row, 4, device->m_strCirSize);
    }
}

LRESULT CSetCabInfo::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ACAD_KEEPFOCUS) return 1;
    if ((message == QXLM_COMBO_CELL_CHANGED || message == QXLM_EDIT_CELL_CHANGED) && wParam != 0) {
        const auto* cell = reinterpret_cast<const QxListCell*>(wParam);
        if (cell->column == kCabinetNumberColumn) autoFill(cell->row);
    }
    return CAdUiBaseDialog::WindowProc(message, wParam, lParam);
}

// A cabinet number that is the base of a circuit's number takes the first such circuit's use, type and
// voltage, over whatever the row held.
void CSetCabInfo::autoFill(int row) {
    CString number = m_listCtrl.GetItemText(row, kCabinetNumberColumn);
    number.Trim();
    for (const CCir1Attrubute* circuit : g_arrCircuits) {
        if (!circuit || QxCabinetNumberBase(circuit->No) != number) continue;
        m_listCtrl.SetItemText(row, 2, circuit->Use);
        m_listCtrl.SetItemText(row, 3, circuit->Type);
        m_listCtrl.SetItemText(row, 4, circuit->Cir1Voltage);
        return;
    }
}

void CSetCabInfo::OnOK() {
    const int rows = m_listCtrl.GetItemCount();
    for (int row = 0; row < rows; ++row) {
        const CString device = m_listCtrl.GetItemText(row, 0);
        CString number = m_listCtrl.GetItemText(row, kCabinetNumberColumn);
        number.Trim();
        if (number.IsEmpty()) {
            MessageBoxW(GetSafeHwnd(), QxFormat(u"设备 %s 柜编号属性为空，无法作为屏柜提交！", device), u"Corvane", MB_OK);
            return;
        }
        if (number.Find(u'.') >= 0) {
            MessageBoxW(GetSafeHwnd(), QxFormat(u"设备 %s 柜编号属性有非法字符存在！", device), u"Corvane", MB_OK);
            return;
        }
    }
    if (m_pProjectTree) {
        const auto& devices = m_pProjectTree->m_arrCabinets;
        for (int index = 0; index < devices.GetSize() && index < rows; ++index) {
            HMProjectTree_INFO* device = devices[index];
            if (!device) continue;
            device->m_strCirNo = m_listCtrl.GetItemText(index, 1);
            device->m_strCirName = m_listCtrl.GetItemText(index, 2);
            device->m_strCirType = m_listCtrl.GetItemText(index, 3);
            device->m_strCirSize = m_listCtrl.GetItemText(index, 4);
        }
    }
    EndDialog(IDOK);
}
