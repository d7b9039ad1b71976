// The host's variables and settings.
#include "platform/host/HostVariables.h"

#include <map>

namespace {

CString upper(const char16_t* name) {
    CString key(name);
    key.MakeUpper();
    return key;
}

struct HostState {
    std::map<CString, short> variables;
    std::map<CString, CString> settings;

    HostState() { reset(); }
    void reset() {
        variables = {{u"SDI", 0}, {u"ISAVEBAK", 1}, {u"FILEDIA", 1}, {u"CMDECHO", 1}};
        // The newest drawing format of the host.
        settings = {{u"DEFAULTFORMATFORSAVE", u"64"}};
    }
};

HostState& state() {
    static HostState host;
    return host;
}

} // namespace

int acedGetVar(const char16_t* name, resbuf* result) {
    if (name == nullptr || result == nullptr) return RTERROR;
    const auto it = state().variables.find(upper(name));
    if (it == state().variables.end()) return RTERROR;
    result->rbnext = nullptr;
    result->restype = RTSHORT;
    result->resval.rint = it->second;
    return RTNORM;
}

int acedSetVar(const char16_t* name, const resbuf* value) {
    if (name == nullptr || value == nullptr) return RTERROR;
    const auto it = state().variables.find(upper(name));
    if (it == state().variables.end()) return RTERROR;
    if (value->restype == RTSHORT) {
        it->second = value->resval.rint;
        return RTNORM;
    }
    if (value->restype == RTLONG && value->resval.rlong >= -32768 && value->resval.rlong <= 32767) {
        it->second = static_cast<short>(value->resval.rlong);
        return RTNORM;
    }
    return RTERROR;
}

int acedGetEnv(const char16_t* name, char16_t* value, size_t length) {
    if (name == nullptr || value == nullptr) return RTERROR;
    const auto it = state().settings.find(upper(name));
    if (it == state().settings.end()) return RTERROR;
    const CString& text = it->second;
    if (static_cast<size_t>(text.GetLength()) + 1 > length) return RTERROR;
    std::copy(text.str().begin(), text.str().end(), value);
    value[text.GetLength()] = u'\0';
    return RTNORM;
}

int acedSetEnv(const char16_t* name, const char16_t* value) {
    if (name == nullptr || value == nullptr) return RTERROR;
    state().settings[upper(name)] = CString(value);
    return RTNORM;
}

void ResetHostVariables() {
    state().reset();
}
