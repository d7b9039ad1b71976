// Which paths of the site are library files that a client may take or send. The site's journal and its
// listings come from outside: a path is taken only when it is plain, lies inside the library folders and
// is not one of the protocol's own files or the client's own settings, logins or endpoint.
#pragma once

#include "support/CString.h"

// A staging name of an upload: "#" ... ".txt", "#.txt" among them.
QX_API bool IsStagingName(const CString& name);
// The protocol's own files: "Server.xml", "Server.backup", "Server_Tmp.xml", "OS.log" at the root; a lock
// "NAME.bak" or a staging file anywhere.
QX_API bool IsProtocolFile(const CString& path);
// A relative path of plain elements (no "." or "..", no drive colon, no control characters, no empty
// element; a trailing "\" marks a folder) that is neither a protocol file nor a file of the client itself
// ("LocalData\", "TempFTP\", "Temp\", "Data\" but for the main library "Data\QxMainLib.mdb", and
// "Client.xml", "Client_PartLib.xml").
QX_API bool IsLibraryPath(const CString& path);
