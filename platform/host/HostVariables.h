// The host's variables (acedGetVar, acedSetVar) and settings (acedGetEnv, acedSetEnv), the subset the
// module uses. Variables start as the host starts: SDI 0, ISAVEBAK 1, FILEDIA 1, CMDECHO 1.
#pragma once

#include "drawing/model/Resbuf.h"

#include <cstddef>

// RTNORM with the value in `result` (type RTSHORT for the 16-bit variables), RTERROR for an unknown name.
QX_API int acedGetVar(const char16_t* name, resbuf* result);
// RTNORM when the variable exists and takes a value of that type (RTSHORT or RTLONG within 16 bits).
QX_API int acedSetVar(const char16_t* name, const resbuf* value);
// A setting of the host as text; RTERROR when it is not set or does not fit with its terminating zero.
QX_API int acedGetEnv(const char16_t* name, char16_t* value, size_t length);
QX_API int acedSetEnv(const char16_t* name, const char16_t* value);

// Back to the values the host starts with; for the host program and tests.
QX_API void ResetHostVariables();
