// The host's application framework for a loaded module: the message codes of the entry point and the
// application classes whose virtual slots receive them.
#pragma once

#include "support/Export.h"

namespace AcRx {

enum AppMsgCode : int {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kOleUnloadAppMsg = 12,
    kPreQuitMsg = 13,
    kInitDialogMsg = 14,
    kEndDialogMsg = 15,
};

enum AppRetCode : int { kRetOK = 0, kRetError = 3 };

} // namespace AcRx

// The signature the host looks up in a module.
using AcRxEntryPointFn = AcRx::AppRetCode (*)(AcRx::AppMsgCode message, void* packet);
using AcRxGetApiVersionFn = int (*)();

// API generation 18, as the host expects it from acrxGetApiVersion.
inline constexpr int kAcRxApiVersion = 0x120000;

// The base of a module's application object; every handler does nothing but return kRetOK.
class QX_API AcRxDbxApp {
public:
    AcRxDbxApp() = default;
    virtual ~AcRxDbxApp();
    AcRxDbxApp(const AcRxDbxApp&) = delete;
    AcRxDbxApp& operator=(const AcRxDbxApp&) = delete;

    virtual AcRx::AppRetCode On_kInitAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kUnloadAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kLoadDwgMsg(void* packet);
    virtual AcRx::AppRetCode On_kUnloadDwgMsg(void* packet);
    virtual AcRx::AppRetCode On_kInvkSubrMsg(void* packet);
    virtual AcRx::AppRetCode On_kCfgMsg(void* packet);
    virtual AcRx::AppRetCode On_kEndMsg(void* packet);
    virtual AcRx::AppRetCode On_kQuitMsg(void* packet);
    virtual AcRx::AppRetCode On_kSaveMsg(void* packet);
    virtual AcRx::AppRetCode On_kDependencyMsg(void* packet);
    virtual AcRx::AppRetCode On_kNoDependencyMsg(void* packet);
    virtual AcRx::AppRetCode On_kOleUnloadAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kPreQuitMsg(void* packet);
    virtual AcRx::AppRetCode On_kInitDialogMsg(void* packet);
    virtual AcRx::AppRetCode On_kEndDialogMsg(void* packet);
    virtual AcRx::AppRetCode On_kNullMsg(void* packet);
    virtual void RegisterServerComponents();

    // Routes a message code to its slot; a code above 15 returns kRetOK without a call.
    AcRx::AppRetCode DispatchMessage(AcRx::AppMsgCode message, void* packet);
};

// Adds the switches for unlocking and MDI awareness that the init message acts on.
class QX_API AcRxArxApp : public AcRxDbxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override;
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override;

    bool m_bUnlockApp = true;
    bool m_bMdiAware = true;
    bool m_bUnlocked = false;
    bool m_bRegisteredMdiAware = false;
};
