// The parameter library of the Corvane application: what it collects about this client, and the stored
// login that lets a later session log in without asking.
#pragma once

#include "support/CString.h"

// Item 1: this client's identity (host and user); item 2: the stored login record, four items joined by
// "·" (enterprise, user, credential, server), result 1 when one is stored; item 3: the client description.
// Other items give an empty text and 0.
QX_API int QxGetCollectInfo_Varnholt_CV201301(int item, CString& value);
// Keeps the login for the next time as item 2, in a file only its owner can read. A login token kept with
// the same four items stays; a changed login drops it.
QX_API void QxLSetLoginInfo_Varnholt_CV201301(CString enterprise, CString user, CString credential, CString server);

// The cloud client's token for a later silent login, kept as a fifth item of the stored login, and only
// beside the login it was issued for: empty when the stored login is another; kept only over the same one.
QX_API CString StoredLoginToken(const CString& enterprise, const CString& user, const CString& credential, const CString& server);
QX_API void KeepLoginToken(const CString& enterprise, const CString& user, const CString& credential, const CString& server,
                           const CString& token);
