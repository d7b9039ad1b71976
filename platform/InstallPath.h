// The install-path library: where the Corvane application keeps its data on this machine.
// The install folder is $CORVANE_HOME, else $XDG_DATA_HOME/corvane/, else ~/.local/share/corvane/;
// SetCorvaneInstallDirOverride (qxcad --install-dir) wins over both. Each function gives a logic path with
// a trailing backslash, or an empty text when no folder can be named; the text lives until the next call.
#pragma once

#include "support/CString.h"

QX_API const char16_t* GetCorvaneLocalInstallPath();
QX_API const char16_t* GetInstallPath_CV();
// $CORVANE_COMMON_HOME when set, else the install folder.
QX_API const char16_t* GetCorvaneCommonResInstallPath();

// An empty text removes the override.
QX_API void SetCorvaneInstallDirOverride(const CString& logicFolder);
// The user's home folder as a logic path with a trailing backslash: where the Windows logic falls back on C:\.
QX_API CString GetUserHomeFolder();
