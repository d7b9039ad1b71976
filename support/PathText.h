// Path text: backslash-separated logic paths, worked on as text only. A folder path ends with a backslash.
#pragma once

#include "support/CString.h"

QX_API bool HasFileExtension(const CString& path);
QX_API CString JoinPath(const CString& first, const CString& second);
QX_API CString GetLastPathItem(const CString& path);
QX_API CString GetParentPath(const CString& path);
QX_API CString GetFileNameOfPath(const CString& path);
QX_API CString GetFileExtension(const CString& path);
QX_API CString RemoveFileExtension(const CString& path);
QX_API bool IsItmFile(const CString& path);
QX_API bool IsPrjFile(const CString& path);

// A name that may become one folder or file name inside the project folder: not empty, not "." or "..",
// and free of separators, drive colons and control characters. Names from the cloud pass this test before
// they touch the disk.
QX_API bool IsSafeFolderName(const CString& name);
