// Small files and folder walks over logic paths.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

// A find of the path: a folder counts, and so does a pattern that matches something. A file name standing
// for the serial devices COM1 or COM2, with any extension, never exists.
QX_API bool FileExists(const CString& path);
// The first line, without its line end. False, with `line` untouched, when the file cannot be read.
QX_API bool ReadFirstLine(const CString& path, CString& line);
// Every line trimmed at both ends; empty lines only with `keepEmpty`. True when the file was read.
QX_API bool ReadFileLines(const CString& path, CStringArray& lines, bool keepEmpty);
// The file anew, each line followed by a line end.
QX_API bool WriteFileLines(const CString& path, const CStringArray& lines);
// Adds to `paths` the files of `folder` whose extension equals `filter` ignoring case ("*.*": all files),
// walking sub-folders at their place in the listing when `recursive`.
QX_API void FindFilesInFolder(const CString& folder, const CString& filter, CStringArray& paths, bool recursive);
// An existing .itm or .prj whose name less extension is the name of the folder holding it.
QX_API bool IsFileInOwnFolder(const CString& path);
// A folder exists when a find of folder + "*.*" finds something.
QX_API bool FolderExists(const CString& folder);
