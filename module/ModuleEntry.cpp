// The module's entry: the application object and the two functions the host looks up by name.
#include "module/CommandTable.h"
#include "module/Session.h"
#include "module/commands/Guarded.h"
#include "platform/host/ArxApp.h"

#define QX_MODULE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

class CHMInterFaceApp final : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode result = AcRxArxApp::On_kInitAppMsg(packet);
        RegisterModuleCommands();
        try {
            HMStartSession();
        } catch (...) {
            // The host sends no unload message to a module that failed its load, and commands left in its
            // table would point into a library it is about to close.
            UnregisterModuleCommands();
            HMEndSession();
            throw;
        }
        return result;
    }

    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        const AcRx::AppRetCode result = AcRxArxApp::On_kUnloadAppMsg(packet);
        UnregisterModuleCommands();
        HMEndSession();
        return result;
    }
};

CHMInterFaceApp& theApp() {
    static CHMInterFaceApp app;
    return app;
}

} // namespace

QX_MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    return RunExportGuarded(u"acrxEntryPoint", AcRx::kRetError, [&] { return theApp().DispatchMessage(message, packet); });
}

QX_MODULE_EXPORT int acrxGetApiVersion() { return kAcRxApiVersion; }
