// The version journal "Server.xml" in memory: a version line "版本日期：STAMP", then one line per change,
// "path|stamp|operation", newest first. The journal only grows, but for the replacing of a path's old line.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

inline constexpr char16_t kVersionLinePrefix[] = u"版本日期：";
inline constexpr char16_t kMainLibraryPath[] = u"Data\\QxMainLib.mdb";

struct STRUCT_FILE_INFO {
    CString m_strPath;
    CString m_strVersion;
    CString m_strOperation;  // "MOD", "DEL" or "REN"
};

class QX_API COperateVersionFile {
public:
    // "Server.xml" in the install folder.
    COperateVersionFile();
    explicit COperateVersionFile(const CString& path);

    void Clear();
    // False when the file does not exist or cannot be read; the list keeps the file's order.
    bool Load();
    // Removes the first entry of each path, ignoring case. True when paths is not empty.
    bool RemoveEntries(const CStringArray& paths);
    // Stamps the paths with one new stamp, puts them at the front, rewrites the file. False when the file
    // cannot be written; its old content then stands.
    bool AddEntries(const CStringArray& paths, const CStringArray& operations);
    bool UpdateEntry(const CString& path, const CString& operation);
    bool UpdateEntries(const CStringArray& paths, const CStringArray& operations);

    // The local time as "2015,03,02,09,05,07".
    static CString MakeVersionStamp();
    // The stamp that follows `last` when the clock gives `now`: never below `last`.
    static CString NextVersionStamp(const CString& last, const CString& now);

    // Rewrites the file: the version line, then the entries.
    bool Save(const CString& versionLine);
    // Puts back, in stamp order, every well-formed entry of `older` whose path this journal lacks: the
    // journal only grows, so a path it lacks is a lost line. Gives how many were put back.
    int RestoreMissingEntries(const COperateVersionFile& older);
    bool HasPath(const CString& path) const;
    // The latest stamp of the version line (when it is one) and of the well-formed entries.
    CString LatestStamp() const;

    const CArray<STRUCT_FILE_INFO>& GetEntries() const { return m_arrEntries; }

    CString m_strFilePath;
    CString m_strVersionLine;  // as Load read it
    // Entries are held by value: nothing outside the journal keeps a pointer to one.
    CArray<STRUCT_FILE_INFO> m_arrEntries;
};

// "版本日期：" and a stamp beginning with a digit.
QX_API bool IsVersionLine(const CString& line);
// A path, a stamp beginning with a digit and one of "MOD", "DEL", "REN".
QX_API bool IsWellFormedEntry(const STRUCT_FILE_INFO& entry);
// The stamp of a version line: the line without the characters of "版本日期：" at its left end.
QX_API CString StampOfVersionLine(const CString& versionLine);
