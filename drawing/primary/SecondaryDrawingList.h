// Resolving the list of a circuit's secondary schematics: "|"-separated paths that may have moved with
// the project folder are looked for beside the primary drawing, then anywhere below its folder.
#pragma once

#include "support/CString.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

class QX_API SecondaryDrawingFinder {
public:
    explicit SecondaryDrawingFinder(CString primaryDrawingPath);

    // FileExists, answered from one listing of each folder asked about; the listings are kept for the
    // finder's life, one read of a primary drawing.
    bool Exists(const CString& path);
    // Each piece becomes the drawing of its file name beside the primary drawing when that exists, else
    // the first "*.dwg" of that name (ignoring case) below the primary drawing's folder; otherwise it
    // stays as written. A piece without "\" has no file name and stays as written.
    CString Resolve(const CString& list);

private:
    CString findBelowFolder(const CString& fileName);
    const std::unordered_set<std::u16string>& namesIn(const CString& folder);

    CString m_folder;
    // The folder is listed once, at the first piece that needs it, and the listing kept for every later
    // circuit of the same read: the first path of each upper-case file name, in listing order.
    bool m_listed = false;
    std::unordered_map<CString, CString> m_firstByName;
    // Names in each folder asked about, folded as the file system compares them.
    std::unordered_map<CString, std::unordered_set<std::u16string>> m_namesByFolder;
};
