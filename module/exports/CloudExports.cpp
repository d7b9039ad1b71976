// The exports that hand their argument to one call of the cloud client as it stands.
#include "module/Session.h"
#include "module/commands/Guarded.h"
#include "module/exports/Exports.h"

namespace {

template <typename Call>
bool forwardAfterLogin(const char16_t* name, Call&& call) {
    return RunExportGuarded(CString(name), false, [&] { return EnsureHMLogin() && call(*g_pHexmoorClient); });
}

} // namespace

QX_MODULE_EXPORT bool QxSys1Refer(HMProjectTree_INFO* tree) {
    return forwardAfterLogin(u"QxSys1Refer", [tree](CHexmoorInteFace& client) { return client.submitItm(tree); });
}

QX_MODULE_EXPORT bool QxsubmitOneCabCir2(HMProjectTree_INFO* tree) {
    return forwardAfterLogin(u"QxsubmitOneCabCir2", [tree](CHexmoorInteFace& client) { return client.submitOneCabCir2(tree); });
}

QX_MODULE_EXPORT bool QxGetDqBomsArray(BomRows& rows) {
    return forwardAfterLogin(u"QxGetDqBomsArray", [&rows](CHexmoorInteFace& client) { return client.getDqBoms(rows); });
}
