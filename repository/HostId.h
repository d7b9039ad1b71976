// The identity of this client on the site: "ip(hostname)", what the journal lock and the file locks carry.
#pragma once

#include "support/CString.h"

// $CORVANE_HOST_ID when set (several users of one machine, or several clients in one test), else the first
// IPv4 address of the host name and the name, as "%s(%s)"; a name that does not resolve gives "(name)".
QX_API CString GetHostId();
