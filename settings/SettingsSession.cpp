// The values of the settings files that are read once per session.
#include "settings/SettingsSession.h"

#include "platform/InstallPath.h"
#include "support/FileUtils.h"
#include "support/NumberText.h"

namespace {

constexpr double kDefaultDistLimit = 0.5;

double readDistLimit() {
    const CString path = GetSettingsFilePath(u"Data\\DistLimit.txt");
    CString line;
    if (path.IsEmpty() || !ReadFirstLine(path, line)) return kDefaultDistLimit;
    const double value = QxToDouble(line);
    return value > 0 ? value : kDefaultDistLimit;
}

int readErpOrCadMode() {
    const CString path = GetSettingsFilePath(u"Data\\ErpOrCad.txt");
    CString line;
    if (path.IsEmpty() || !ReadFirstLine(path, line)) return QX_MODE_CAD;
    const CString head = line.Left(3);
    if (head.EqualsNoCase(u"Erp")) return QX_MODE_ERP;
    if (head.EqualsNoCase(u"BSF")) return QX_MODE_BSF;
    return QX_MODE_CAD;
}

} // namespace

CString GetSettingsFilePath(const CString& relative) {
    const CString install = GetInstallPath_CV();
    if (install.IsEmpty()) return CString();
    return install + relative;
}

double CSettingsSession::GetDistLimit() {
    if (!m_dDistLimit) m_dDistLimit = readDistLimit();
    return *m_dDistLimit;
}

int CSettingsSession::GetErpOrCadMode() {
    if (!m_nErpOrCadMode) m_nErpOrCadMode = readErpOrCadMode();
    return *m_nErpOrCadMode;
}
