// The commands of qxlib, one function each. Remote paths are relative to the site's root; a person may
// write them with slashes or backslashes, and a trailing separator marks a folder. The local copy of a
// remote file is the same path under the install folder, where the application keeps its libraries.
// Each returns the exit status: 0 done, 1 failed (the reason has been printed).
#pragma once

#include "support/CString.h"

#include <optional>
#include <string>

struct SetupOptions {
    CString host;
    int port = 21;
    CString root;
    CString user;  // empty: anonymous
    bool passive = false;
    bool staging = false;
};

int RunSetup(const SetupOptions& options);
int RunStatus();
int RunCheckOut(const CString& file);
int RunSubmit(const CString& file);
int RunCancel(const CString& file);
int RunDelete(const CString& path);
int RunMakeFolder(const CString& path);
int RunRename(const CString& oldPath, const CString& newPath);
int RunPushTree(const CString& localFolder, const CString& remoteFolder);
int RunSync();

// A path of the site as the logic writes it, or nullopt when it is not a plain relative path (empty
// components, "." or "..", drive colons, control characters).
std::optional<CString> RemotePathFromPerson(const std::string& text);
