// Document locks, queued commands and host variables.
#include "drawing/access/QxHostCalls.h"

#include "platform/host/Documents.h"
#include "platform/host/HostVariables.h"

namespace {

bool singleDocumentMode() {
    int sdi = 0;
    return QxGetVarInt(u"SDI", sdi) && sdi != 0;
}

} // namespace

bool QxLockCurDoc() {
    if (singleDocumentMode()) return true;
    AcApDocument* document = acDocManagerPtr()->mdiActiveDocument();
    if (document == nullptr) return false;
    return acDocManagerPtr()->lockDocument(document, AcAp::kWrite, nullptr, nullptr, true) == Acad::eOk;
}

bool QxUnlockCurDoc() {
    if (singleDocumentMode()) return true;
    AcApDocument* document = acDocManagerPtr()->mdiActiveDocument();
    if (document == nullptr) return false;
    return acDocManagerPtr()->unlockDocument(document) == Acad::eOk;
}

void QxSendCommand(CString text) {
    if (text.IsEmpty()) return;
    acDocManagerPtr()->sendStringToExecute(acDocManagerPtr()->curDocument(), text, false, true, true);
}

bool QxGetVarInt(CString name, int& value) {
    resbuf result{};
    if (acedGetVar(name.c_str(), &result) != RTNORM || result.restype != RTSHORT) return false;
    value = result.resval.rint;
    return true;
}

bool QxSetVarInt(CString name, int value) {
    resbuf setting{};
    setting.restype = RTSHORT;
    setting.resval.rint = static_cast<short>(value);
    return acedSetVar(name.c_str(), &setting) == RTNORM;
}
