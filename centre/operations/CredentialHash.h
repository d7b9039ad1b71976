// Credentials are kept only as salted hashes (libsodium's crypto_pwhash string form).
#pragma once

#include "support/CString.h"

// Empty when hashing failed (out of memory).
CString HashCredential(const CString& credential);
bool VerifyCredential(const CString& hash, const CString& credential);
