// The host's application framework for a loaded module.
#include "platform/host/ArxApp.h"

using namespace AcRx;

AcRxDbxApp::~AcRxDbxApp() = default;

AppRetCode AcRxDbxApp::On_kInitAppMsg(void*) {
    RegisterServerComponents();
    return kRetOK;
}
AppRetCode AcRxDbxApp::On_kUnloadAppMsg(void*) { return kRetOK; }
// The module's table of LISP functions is empty, so the three drawing-level messages have nothing to walk.
AppRetCode AcRxDbxApp::On_kLoadDwgMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kUnloadDwgMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kInvkSubrMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kCfgMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kEndMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kQuitMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kSaveMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kDependencyMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kNoDependencyMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kOleUnloadAppMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kPreQuitMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kInitDialogMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kEndDialogMsg(void*) { return kRetOK; }
AppRetCode AcRxDbxApp::On_kNullMsg(void*) { return kRetOK; }
void AcRxDbxApp::RegisterServerComponents() {}

AppRetCode AcRxDbxApp::DispatchMessage(AppMsgCode message, void* packet) {
    switch (message) {
    case kNullMsg: return On_kNullMsg(packet);
    case kInitAppMsg: return On_kInitAppMsg(packet);
    case kUnloadAppMsg: return On_kUnloadAppMsg(packet);
    case kLoadDwgMsg: return On_kLoadDwgMsg(packet);
    case kUnloadDwgMsg: return On_kUnloadDwgMsg(packet);
    case kInvkSubrMsg: return On_kInvkSubrMsg(packet);
    case kCfgMsg: return On_kCfgMsg(packet);
    case kEndMsg: return On_kEndMsg(packet);
    case kQuitMsg: return On_kQuitMsg(packet);
    case kSaveMsg: return On_kSaveMsg(packet);
    case kDependencyMsg: return On_kDependencyMsg(packet);
    case kNoDependencyMsg: return On_kNoDependencyMsg(packet);
    case kOleUnloadAppMsg: return On_kOleUnloadAppMsg(packet);
    case kPreQuitMsg: return On_kPreQuitMsg(packet);
    case kInitDialogMsg: return On_kInitDialogMsg(packet);
    case kEndDialogMsg: return On_kEndDialogMsg(packet);
    }
    return kRetOK;
}

AppRetCode AcRxArxApp::On_kInitAppMsg(void* packet) {
    m_bUnlocked = m_bUnlockApp;
    m_bRegisteredMdiAware = m_bMdiAware;
    return AcRxDbxApp::On_kInitAppMsg(packet);
}

AppRetCode AcRxArxApp::On_kUnloadAppMsg(void* packet) { return AcRxDbxApp::On_kUnloadAppMsg(packet); }
