// The values of the settings files that are read once and then kept for the rest of a session.
#pragma once

#include "support/CString.h"

#include <optional>

// How the application is run, from the first line of Data\ErpOrCad.txt.
enum QxErpOrCadMode : int {
    QX_MODE_CAD = 0,  // no file, or a line that names neither mode
    QX_MODE_ERP = 1,  // "Erp..."
    QX_MODE_BSF = 2,  // "BSF..."
};

// A session keeps the first answer for DistLimit and ErpOrCad: the application reads each file once and
// never again while it runs. The caller owns the session, so two sessions (two tests, two install
// folders) never see each other's values.
class QX_API CSettingsSession {
public:
    virtual ~CSettingsSession() = default;

    // Data\DistLimit.txt: the first line when it is a number above 0, else 0.5.
    double GetDistLimit();
    // Data\ErpOrCad.txt: mode 1 for a first line beginning with "Erp", 2 for "BSF", in any case; else 0.
    int GetErpOrCadMode();

private:
    std::optional<double> m_dDistLimit;
    std::optional<int> m_nErpOrCadMode;
};

// The install folder's file for a relative logic path ("Data\\DistLimit.txt"); empty when there is no
// install folder.
QX_API CString GetSettingsFilePath(const CString& relative);
