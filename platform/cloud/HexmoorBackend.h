// What stands behind the cloud client: the embedded BOM centre in the product, a scripted backend in tests,
// a network backend later. The client asks the factory in force for one backend when it is made.
#pragma once

#include "project/ProjectTree.h"

#include <functional>
#include <memory>

class CHexmoorInteFace;

class QX_API IHexmoorBackend {
public:
    virtual ~IHexmoorBackend();

    // Interactive login; fills the client's login fields. 1 or more: logged in; 0: cancelled; -1: refused.
    virtual int Login(CHexmoorInteFace& client) = 0;
    // Logs in with the client's fields as they stand, without asking.
    virtual int autoLogin(CHexmoorInteFace& client) = 0;
    virtual bool isLogin() = 0;
    virtual bool UserInfoCollect(const CString& item, const CString& key, const CString& text) = 0;
    virtual CString getProjectName(const CString& id) = 0;
    // The returned trees are the caller's, freed by the client's freeTreeInfo.
    virtual HMProjectTree_INFO* getProjectInfo(HMProjectTree_INFO* local) = 0;
    virtual HMProjectTree_INFO* getOneCabProjectInfo() = 0;
    virtual bool submitItm(HMProjectTree_INFO* tree) = 0;
    virtual bool submitBom(HMProjectTree_INFO* tree, bool keepAcceptedRows) = 0;
    virtual void bomCmp(HMProjectTree_INFO* tree) = 0;
    virtual bool submitOneCabCir2(HMProjectTree_INFO* tree) = 0;
    virtual bool getDqBoms(BomRows& rows) = 0;
    virtual bool getImportBoms(const CString& projectId, const CString& cabinetId, BomRows& rows) = 0;
};

using HexmoorBackendFactory = std::function<std::unique_ptr<IHexmoorBackend>()>;

// Installs the factory that new clients ask; an empty factory restores the embedded BOM centre.
QX_API void SetHexmoorBackendFactory(HexmoorBackendFactory factory);
QX_API std::unique_ptr<IHexmoorBackend> MakeHexmoorBackend();
