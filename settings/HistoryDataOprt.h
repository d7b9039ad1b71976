// CHistoryDataOprt: the last values of the application's dialogs, kept in LocalData\HistoryData.txt.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// A value is addressed by its line index in the file. The constructor reads the file (or makes it with
// the defaults on a first run); the destructor rewrites it whole, but only after a setter ran.
class QX_API CHistoryDataOprt {
public:
    CHistoryDataOprt();
    virtual ~CHistoryDataOprt();
    CHistoryDataOprt(const CHistoryDataOprt&) = delete;
    CHistoryDataOprt& operator=(const CHistoryDataOprt&) = delete;

    // Empty for an index outside the values.
    void GetData(int index, CString& text) const;
    // Outside the values nothing happens; else the text is stored ("%d", "%.2f") and the store is changed.
    void SetIntData(int index, int value);
    void SetDoubleData(int index, double value);

    bool m_bChanged = false;
    CStringArray m_arrData;

private:
    void setText(int index, const CString& text);

    CString m_strPath;  // the file as named when the store was made
};
