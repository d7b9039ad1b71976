// CHexmoorInteFace: the client of the cloud BOM centre, one object per session. The module reads and writes
// its login fields directly; everything else goes to the backend behind it. Saving a Hexmoor.xml and freeing
// a tree are local work of the client.
#pragma once

#include "platform/cloud/HexmoorBackend.h"

class QX_API CHexmoorInteFace {
public:
    CHexmoorInteFace();
    explicit CHexmoorInteFace(std::unique_ptr<IHexmoorBackend> backend);
    ~CHexmoorInteFace();
    CHexmoorInteFace(const CHexmoorInteFace&) = delete;
    CHexmoorInteFace& operator=(const CHexmoorInteFace&) = delete;

    int Login();
    int autoLogin();
    bool isLogin();
    bool UserInfoCollect(CString item, CString key, CString text);
    CString getProjectName(CString id);
    HMProjectTree_INFO* getProjectInfo(HMProjectTree_INFO* local);
    HMProjectTree_INFO* getOneCabProjectInfo();
    void freeTreeInfo(HMProjectTree_INFO* tree);
    bool saveXml(CString path, CString xml);
    bool submitItm(HMProjectTree_INFO* tree);
    bool submitBom(HMProjectTree_INFO* tree, bool flag);
    void bomCmp(HMProjectTree_INFO* tree);
    bool submitOneCabCir2(HMProjectTree_INFO* tree);
    bool getDqBoms(BomRows& rows);
    bool getImportBoms(CString projectId, CString cabinetId, BomRows& rows);

private:
    // At each login the endpoint decides: an http(s) endpoint is a hexmoord server, anything else the
    // installed backend (the embedded centre unless a test installed another).
    void selectBackend();

    std::unique_ptr<IHexmoorBackend> m_backend;  // the client's own part, which the module never touches
    CString m_backendEndpoint;                    // the server m_backend talks to; empty: the installed backend

public:
    CString m_strEnterprise;
    CString m_strUser;
    CString m_strCredential;
    CString m_strServer;
    CString m_strClientTag;
    CString m_strClientInfo;
};
