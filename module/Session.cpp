// The session with the cloud: start, end and the login guard.
#include "module/Session.h"

#include "module/Login.h"
#include "platform/host/HostOutput.h"
#include "platform/params/ParameterLibrary.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Locations.h"
#include "support/PathText.h"
#include "support/TextFile.h"

std::unique_ptr<CHexmoorInteFace> g_pHexmoorClient;
bool g_bForceLogin = false;

namespace {

// An endpoint is printable text; a file of binary junk does not name one.
bool looksLikeEndpoint(const CString& text) {
    for (char16_t ch : text.str())
        if (ch < 0x20 || ch == 0xFFFD) return false;
    return true;
}

void applyEndpointOverride(const CString& installDir) {
    const CString hostFile = installDir + u"Data\\HMHost.dat";
    if (!FileExists(hostFile)) return;
    CString line;
    if (!ReadFirstLine(hostFile, line)) return;
    line.Trim();
    if (line.IsEmpty()) return;
    if (!looksLikeEndpoint(line)) {
        acutPrintf(u"\nData\\HMHost.dat does not hold an endpoint; the default %s stays.\n", g_pHexmoorClient->m_strServer);
        return;
    }
    g_pHexmoorClient->m_strServer = line;
}

void takeUpHandOver(const CString& installDir) {
    const CString handOver = installDir + u"Temp\\HMID.txt";
    if (!FileExists(handOver)) return;
    CStringArray lines;
    if (!ReadTextLines(handOver, lines)) return;  // unreadable: it stays and is ignored
    QxFs::DeleteFile(handOver);                    // a one-shot message, whatever it held
    if (lines.GetSize() != 4) return;

    CHexmoorInteFace& client = *g_pHexmoorClient;
    client.m_strUser = lines[0];
    client.m_strEnterprise = lines[1];
    client.m_strCredential = lines[2];
    CString projectId = lines[3];
    projectId.Trim();
    SetClientIdentity(client);

    if (client.autoLogin() == 0) {
        acutPrintf(u"自动登录云端失败！");
        return;
    }
    acutPrintf(u"自动登录云端成功！");
    if (projectId.IsEmpty()) return;

    const CString name = client.getProjectName(projectId);
    if (!IsSafeFolderName(name)) return;
    const CString project = GetMyProjectsDir() + name + u"\\" + name + u".itm";
    if (FileExists(project)) SetRecentProject(project);
}

} // namespace

void HMStartSession() {
    g_pHexmoorClient = std::make_unique<CHexmoorInteFace>();
    g_pHexmoorClient->m_strServer = kDefaultHexmoorEndpoint;
    const CString installDir = GetLocalInstallDir();
    if (installDir.IsEmpty()) return;
    // A rewrite in place that a kill cut off leaves the file torn; its old bytes are still kept.
    for (const CString& restored : QxFs::RestoreUnfinishedInPlaceWrites())
        acutPrintf(u"\n%s上次改写未能完成，已恢复为改写前的内容。\n", restored);
    applyEndpointOverride(installDir);
    takeUpHandOver(installDir);
}

void HMEndSession() {
    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);
    g_pHexmoorClient.reset();
}

bool EnsureHMLogin() {
    if (!g_pHexmoorClient) return false;
    if (g_pHexmoorClient->isLogin()) return true;
    HMLoginCloud();
    return g_pHexmoorClient->isLogin();
}
