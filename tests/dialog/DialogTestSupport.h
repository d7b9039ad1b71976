// What the dialog's suites share: circuits of a scan, a project with devices, a parent window that records
// the list's messages, and a window system that clicks cells and paints as a window would.
#pragma once

#include "common/CapturedOutput.h"
#include "drawing/ExtractionState.h"
#include "project/ProjectTree.h"
#include "support/dialog/SetCabInfo.h"
#include "support/dialog/SortedListCtrl.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

// Every row of the list, its cells joined by "|".
inline std::vector<CString> rowsOf(const CSortedListCtrl& list) {
    std::vector<CString> rows;
    for (int row = 0; row < list.GetItemCount(); ++row) {
        CString line;
        for (int column = 0; column < list.GetColumnCount(); ++column)
            line += (column ? CString(u"|") : CString()) + list.GetItemText(row, column);
        rows.push_back(line);
    }
    return rows;
}

// Circuits in g_arrCircuits for the length of one test.
class ScannedCircuits {
public:
    ScannedCircuits() { QxFreeCircuits(g_arrCircuits); }
    ~ScannedCircuits() { QxFreeCircuits(g_arrCircuits); }
    ScannedCircuits(const ScannedCircuits&) = delete;
    ScannedCircuits& operator=(const ScannedCircuits&) = delete;

    void add(const CString& number, const CString& use = {}, const CString& type = {}, const CString& voltage = {}) {
        auto* circuit = new CCir1Attrubute;
        circuit->No = number;
        circuit->Use = use;
        circuit->Type = type;
        circuit->Cir1Voltage = voltage;
        g_arrCircuits.Add(circuit);
    }
};

// A project root whose devices are its direct children, in the order added.
struct ProjectWithDevices {
    HMProjectTree_INFO root;

    HMProjectTree_INFO& add(const CString& name, const CString& number = {}, const CString& cabinetName = {}) {
        auto* device = new HMProjectTree_INFO;
        device->m_strName = name;
        device->m_strType = u"0";
        device->m_strCirNo = number;
        device->m_strCirName = cabinetName;
        device->m_pRoot = &root;
        device->m_pParent = &root;
        root.m_arrChildren.Add(device);
        root.m_arrCabinets.Add(device);
        return *device;
    }
    HMProjectTree_INFO& device(int index) { return *root.m_arrCabinets[index]; }
    // Every device's name and four cabinet fields, joined by "|".
    std::vector<CString> devices() const {
        std::vector<CString> all;
        for (const HMProjectTree_INFO* d : root.m_arrCabinets)
            all.push_back(d->m_strName + u"|" + d->m_strCirNo + u"|" + d->m_strCirName + u"|" + d->m_strCirType + u"|" + d->m_strCirSize);
        return all;
    }
};

// The cabinet dialog of a test, with the circuits and the project it shows and the host's output.
class CabinetDialogTest : public ::testing::Test {
protected:
    std::vector<CString> boxTexts() const {
        std::vector<CString> texts;
        for (const CapturedOutput::Box& box : output.boxes) texts.push_back(box.text);
        return texts;
    }

    ScannedCircuits circuits;
    ProjectWithDevices project;
    CapturedOutput output;
    CSetCabInfo dialog;
};

class RecordingParent final : public CMessageWnd {
public:
    struct Message {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        QxListCell cell;  // what the address in wParam named, for the change notifications
    };

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        Message record{message, wParam, lParam, {}};
        if ((message == QXLM_COMBO_CELL_CHANGED || message == QXLM_EDIT_CELL_CHANGED) && wParam != 0)
            record.cell = *reinterpret_cast<const QxListCell*>(wParam);
        messages.push_back(record);
        return 0;
    }
    // Every message so far, as "name row column", joined by ", ": "heading" gives its column, "icon" its row.
    std::string log() const {
        const auto both = [](long long first, long long second) {
            return std::to_string(first) + " " + std::to_string(second);
        };
        std::string text;
        for (const Message& m : messages) {
            text += text.empty() ? "" : ", ";
            if (m.message == QXLM_COLUMNCLICKED) text += "heading " + std::to_string(m.lParam);
            else if (m.message == QXLM_ICON_CLICKED) text += "icon " + std::to_string(m.wParam);
            else if (m.message == QXLM_COMBO_OPENING) text += "opening " + both(m.wParam, m.lParam);
            else if (m.message == QXLM_COMBO_CELL_CHANGED) text += "combo " + both(m.cell.row, m.cell.column);
            else if (m.message == QXLM_EDIT_CELL_CHANGED) text += "edit " + both(m.cell.row, m.cell.column);
            else text += std::to_string(m.message);
        }
        return text;
    }

    std::vector<Message> messages;
};

// The window system of a test.
class ListDriver {
public:
    ListDriver(CSortedListCtrl& list, CMessageWnd& parent) : m_list(list), m_parent(parent) {}

    CPoint cellMiddle(int row, int column) const {
        const CPoint position = m_list.GetItemPosition(row);
        const CRect heading = m_list.GetHeaderItemRect(column);
        return {position.x + (heading.left + heading.right) / 2, position.y + m_list.GetRowHeight() / 2};
    }
    // A click and what follows it: the posted messages, then the paint.
    void click(int row, int column, bool control = false) {
        m_list.OnLButtonDown(cellMiddle(row, column), control);
        settle();
    }
    void settle() {
        m_parent.DeliverPostedMessages();
        for (int round = 0; round < 4 && m_list.NeedsPaint(); ++round) m_list.OnPaint();
    }
    void type(const CString& text) {
        if (textEditorOpen()) m_list.GetTextEditor()->UserTypes(text);
        else if (dropDownOpen()) m_list.GetDropDownEditor()->UserTypes(text);
        settle();
    }
    void key(int keyCode) {
        m_list.GetTextEditor()->UserPressesKey(keyCode);
        settle();
    }
    // Where the edit stands: "row column editor" or "no cell editor", the editor being "text", "drop-down", "both" or "none".
    std::string editing() const {
        const std::string editor = textEditorOpen() && dropDownOpen() ? "both" : textEditorOpen() ? "text" : dropDownOpen() ? "drop-down" : "none";
        if (m_list.GetEditRow() < 0) return "no cell " + editor;
        return std::to_string(m_list.GetEditRow()) + " " + std::to_string(m_list.GetEditColumn()) + " " + editor;
    }
    bool textEditorOpen() const { return m_list.GetTextEditor() && m_list.GetTextEditor()->IsWindowVisible(); }
    bool dropDownOpen() const {
        return m_list.GetDropDownEditor() && m_list.GetDropDownEditor()->IsWindowVisible();
    }

private:
    CSortedListCtrl& m_list;
    CMessageWnd& m_parent;
};
