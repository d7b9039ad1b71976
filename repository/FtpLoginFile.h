// The login file of the repository ("LocalData\QxFTPLoginInfo.sys"): eleven lines, each scrambled so that
// the file holds only the letters a to p. Scrambling keeps a password from being read at a glance; it is
// no protection, so the file is kept readable by its owner only.
#pragma once

#include "support/CString.h"

#include <array>

// The lines by their meaning, from 0.
enum FtpLoginLine : int {
    kLoginUnused1 = 0,
    kLoginRootPath = 1,
    kLoginHost = 2,
    kLoginPort = 3,
    kLoginAnonymous = 4,  // "1": user and password are not sent
    kLoginUser = 5,
    kLoginPassword = 6,
    kLoginUnused8 = 7,
    kLoginUnused9 = 8,
    kLoginUnused10 = 9,
    kLoginPassive = 10,  // "1": passive mode
    kLoginLineCount = 11,
};

using FtpLoginLines = std::array<CString, kLoginLineCount>;

// Two letters per character: "a" plus the high and "a" plus the low four bits of its low byte. A character
// above 255 loses its high bits.
QX_API void EncodeText(CString& text);
QX_API void DecodeText(CString& text);

// False when the file is missing, does not open or has fewer than eleven lines.
QX_API bool ReadLoginInfo(const CString& path, FtpLoginLines& lines);
// The file must exist already; one line each, no line end behind the last.
QX_API bool WriteLoginInfo(const CString& path, const FtpLoginLines& lines);
