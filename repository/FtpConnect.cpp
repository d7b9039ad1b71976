// The session of CMyFtpConnection: login from the login file, the root folder, the work folder.
#include "repository/FtpLoginFile.h"
#include "repository/FtpTransport.h"
#include "repository/MyFtpConnection.h"
#include "repository/RepositoryMessages.h"

#include "platform/InstallPath.h"
#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/NumberText.h"
#include "support/PathText.h"

namespace {

bool stagingMarkerBeside(const CString& loginFile) { return FileExists(JoinPath(GetParentPath(loginFile), u"Ftp.bg")); }

} // namespace

CMyFtpConnection::CMyFtpConnection() : CMyFtpConnection(CString(GetInstallPath_CV()) + u"LocalData\\QxFTPLoginInfo.sys") {}

CMyFtpConnection::CMyFtpConnection(const CString& loginFile)
    : m_strLoginFile(loginFile), m_strInstallDir(GetInstallPath_CV()), m_nStaging(stagingMarkerBeside(loginFile) ? 1 : 0) {}

CMyFtpConnection::~CMyFtpConnection() { Disconnect(); }

bool CMyFtpConnection::ConnectServer() {
    FtpLoginLines login;
    if (!ReadLoginInfo(m_strLoginFile, login)) return false;
    m_nStaging = stagingMarkerBeside(m_strLoginFile) ? 1 : 0;

    m_strRootPath = login[kLoginRootPath];
    FtpEndpoint endpoint;
    endpoint.host = login[kLoginHost];
    endpoint.port = QxToInt(login[kLoginPort]);
    if (endpoint.port <= 0 || endpoint.port > 65535) endpoint.port = 21;
    if (login[kLoginAnonymous] != u"1") {
        endpoint.user = login[kLoginUser];
        endpoint.password = login[kLoginPassword];
    }
    endpoint.passive = login[kLoginPassive] == u"1";

    Disconnect();
    CString error;
    m_pConnection = CFtpTransport::Open(endpoint, m_timings, error);
    if (!m_pConnection) {
        // What the platform's Internet exception would carry to the command line.
        acutPrintf(u"\n%s", error + u"\n");
        return false;
    }
    if (!m_strRootPath.IsEmpty() && !m_pConnection->SetCurrentDirectory(u"/" + m_strRootPath)) {
        Disconnect();
        ShowRepositoryBox(QxFormat(u"设置站点当前路径失败!\n可能原因:FTP站点中路径名%s不存在", m_strRootPath), MB_ICONERROR);
        return false;
    }
    return true;
}

void CMyFtpConnection::Disconnect() { m_pConnection.reset(); }

bool CMyFtpConnection::returnToRoot() { return m_pConnection && m_pConnection->SetCurrentDirectory(u"/" + m_strRootPath); }

CString CMyFtpConnection::GetTempFolder() const { return m_strInstallDir + u"TempFTP\\"; }

CString CMyFtpConnection::workFile(const CString& name) const { return GetTempFolder() + name; }

CString CMyFtpConnection::clientFile(const CString& name) const { return m_strInstallDir + name; }

void CMyFtpConnection::ClearTempFolder() {
    for (const QxFs::Entry& entry : QxFs::List(GetTempFolder()))
        if (!entry.isFolder) QxFs::DeleteFile(workFile(entry.name));
}
