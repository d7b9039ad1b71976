// Login to the cloud, silent or interactive.
#include "module/Login.h"

#include "module/Session.h"
#include "module/UsageFiles.h"
#include "platform/host/HostOutput.h"
#include "platform/params/ParameterLibrary.h"
#include "support/TextHelpers.h"

namespace {

// The stored login: enterprise, user, credential and server. A record of fewer items is no login.
bool takeStoredLogin(CHexmoorInteFace& client) {
    CString record;
    if (QxGetCollectInfo_Varnholt_CV201301(2, record) != 1) return false;
    CStringArray items;
    SplitString(record, u"\u00B7", items);
    if (items.GetSize() < 4) return false;
    client.m_strEnterprise = items[0];
    client.m_strUser = items[1];
    client.m_strCredential = items[2];
    client.m_strServer = items[3];
    return true;
}

struct ForcedLoginEnd {
    ForcedLoginEnd() = default;
    ForcedLoginEnd(const ForcedLoginEnd&) = delete;
    ForcedLoginEnd& operator=(const ForcedLoginEnd&) = delete;
    ~ForcedLoginEnd() { g_bForceLogin = false; }
};

void keepLogin(const CHexmoorInteFace& client) {
    QxLSetLoginInfo_Varnholt_CV201301(client.m_strEnterprise, client.m_strUser, client.m_strCredential,
                                      client.m_strServer);
}

} // namespace

CString SetClientIdentity(CHexmoorInteFace& client) {
    CString item1;
    CString item3;
    QxGetCollectInfo_Varnholt_CV201301(1, item1);
    QxGetCollectInfo_Varnholt_CV201301(3, item3);
    client.m_strClientInfo = item3;
    client.m_strClientTag = CString(u"CV_V9.0&") + item1;
    return item1;
}

void HMLoginCloud() {
    // Lowered on every way out, an exception included: a raised flag would force the next login too.
    const ForcedLoginEnd lowerAtEnd;
    if (!g_pHexmoorClient) return;
    CHexmoorInteFace& client = *g_pHexmoorClient;
    if (!takeStoredLogin(client)) g_bForceLogin = true;
    const CString item1 = SetClientIdentity(client);

    int result;
    if (!g_bForceLogin) {
        result = client.autoLogin();
        keepLogin(client);
    } else {
        result = client.Login();
        if (result >= 1) {
            keepLogin(client);
            SendUsageFiles(client, item1);
        }
    }
    if (result >= 1) acutPrintf(u"\n登录云端成功！");
    if (result == -1) acutPrintf(u"登录云端失败！");
}
