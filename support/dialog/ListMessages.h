// The messages between the editing list, its two editors and its parent window.
#pragma once

#include "platform/host/Dialogs.h"

enum : UINT {
    // list to parent, sent: a heading was clicked (list handle, column).
    QXLM_COLUMNCLICKED = WM_USER + 1,
    // text editor to list, sent: Enter, Up and Down in the editor (editor handle, key code).
    QXLM_EDIT_ENTER = WM_USER + 10,
    QXLM_EDIT_UP = WM_USER + 11,
    QXLM_EDIT_DOWN = WM_USER + 12,
    // to the list: one column back, one column on (no control of this module sends them).
    QXLM_PREV_COLUMN = WM_USER + 13,
    QXLM_NEXT_COLUMN = WM_USER + 14,
    // text editor to list: it lost the focus (nothing answers it).
    QXLM_EDIT_KILLFOCUS = WM_USER + 15,
    // text editor to list: its text changed.
    QXLM_EDIT_CHANGED = WM_USER + 16,
    // drop-down editor to list: text was typed and, trimmed, is not empty; another entry was picked.
    QXLM_COMBO_TYPED = WM_USER + 20,
    QXLM_COMBO_PICKED = WM_USER + 21,
    // list to parent, posted: a click fell on the icon zone of the first column (row, 0).
    QXLM_ICON_CLICKED = WM_USER + 101,
    // list to parent, sent: a drop-down cell is about to open (row, column); the choices may change now.
    QXLM_COMBO_OPENING = WM_USER + 102,
    // list to parent, sent: the text of a drop-down cell, of a text-editor cell has changed
    // (address of {row, column}, list handle).
    QXLM_COMBO_CELL_CHANGED = WM_USER + 112,
    QXLM_EDIT_CELL_CHANGED = WM_USER + 113,
};

enum : int { VK_RETURN = 13, VK_UP = 38, VK_DOWN = 40 };

// The cell a change notification speaks of; its address travels as the first parameter.
struct QxListCell {
    int row = -1;
    int column = -1;
};
