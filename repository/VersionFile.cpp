// The version journal in memory.
#include "repository/VersionFile.h"

#include "platform/InstallPath.h"
#include "support/FileUtils.h"
#include "support/Format.h"
#include "support/TextFile.h"

#include <ctime>

CString StampOfVersionLine(const CString& versionLine) {
    CString stamp = versionLine;
    stamp.TrimLeft(CString(kVersionLinePrefix));
    return stamp;
}

COperateVersionFile::COperateVersionFile() : COperateVersionFile(CString(GetInstallPath_CV()) + u"Server.xml") {}

COperateVersionFile::COperateVersionFile(const CString& path) : m_strFilePath(path) {}

void COperateVersionFile::Clear() { m_arrEntries.RemoveAll(); }

bool IsVersionLine(const CString& line) {
    const CString stamp = StampOfVersionLine(line);
    return line.StartsWith(kVersionLinePrefix) && !stamp.IsEmpty() && stamp[0] >= u'0' && stamp[0] <= u'9';
}

bool IsWellFormedEntry(const STRUCT_FILE_INFO& entry) {
    const CString& stamp = entry.m_strVersion;
    return !entry.m_strPath.IsEmpty() && !stamp.IsEmpty() && stamp[0] >= u'0' && stamp[0] <= u'9' &&
           (entry.m_strOperation == u"MOD" || entry.m_strOperation == u"DEL" || entry.m_strOperation == u"REN");
}

bool COperateVersionFile::Load() {
    CStringArray lines;
    if (!ReadFileLines(m_strFilePath, lines, false)) return false;
    for (int i = 0; i < lines.GetSize(); ++i) {
        // A first line that is no version line (a journal overwritten or cut) is kept as an entry, so that
        // rewriting the journal loses nothing of it.
        if (i == 0 && IsVersionLine(lines[0])) {
            m_strVersionLine = lines[0];
            continue;
        }
        const CString& line = lines[i];
        STRUCT_FILE_INFO entry;
        const int first = line.Find(u'|');
        if (first >= 0) {
            entry.m_strPath = line.Left(first);
            const int second = line.Find(u'|', first + 1);
            if (second >= 0) {
                entry.m_strVersion = line.Mid(first + 1, second - first - 1);
                entry.m_strOperation = line.Mid(second + 1);
            }
        }
        m_arrEntries.Add(entry);
    }
    return true;
}

bool COperateVersionFile::RemoveEntries(const CStringArray& paths) {
    for (const CString& path : paths) {
        for (int i = 0; i < m_arrEntries.GetSize(); ++i) {
            if (!m_arrEntries[i].m_strPath.EqualsNoCase(path)) continue;
            m_arrEntries.RemoveAt(i);
            break;
        }
    }
    return !paths.IsEmpty();
}

CString COperateVersionFile::MakeVersionStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return QxFormat(u"%d,%2.2d,%2.2d,%2.2d,%2.2d,%2.2d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                    local.tm_hour, local.tm_min, local.tm_sec);
}

CString COperateVersionFile::NextVersionStamp(const CString& last, const CString& now) {
    if (last.IsEmpty() || last.CompareNoCase(now) < 0) return now;
    // The clock is behind the journal (two changes in one second, or a slow clock): the last field of the
    // last stamp is raised by one and written through "%d", so 07 becomes 8 and 59 becomes 60. Where that
    // would sort below the last stamp as text (9 to 10), a field ",1" is added instead: stamps are only
    // ever compared as text, and must never go back.
    const int comma = last.ReverseFind(u',');
    const CString field = last.Mid(comma + 1);
    int value = 0;
    for (int i = 0; i < field.GetLength() && field[i] >= u'0' && field[i] <= u'9' && value < 100000000; ++i)
        value = value * 10 + (field[i] - u'0');
    const CString raised = last.Left(comma + 1) + QxFormat(u"%d", value + 1);
    if (raised.CompareNoCase(last) > 0) return raised;
    return last + u",1";
}

CString COperateVersionFile::LatestStamp() const {
    CString firstLine;
    ReadFirstLine(m_strFilePath, firstLine);
    firstLine.Trim();
    CString latest = IsVersionLine(firstLine) ? StampOfVersionLine(firstLine) : CString();
    for (const STRUCT_FILE_INFO& entry : m_arrEntries)
        if (IsWellFormedEntry(entry) && entry.m_strVersion.CompareNoCase(latest) > 0) latest = entry.m_strVersion;
    return latest;
}

bool COperateVersionFile::AddEntries(const CStringArray& paths, const CStringArray& operations) {
    // The stamp follows the latest one the journal holds, whether in its version line or in its lines: a
    // journal whose first line is damaged still gets well-formed stamps that never go back.
    const CString stamp = NextVersionStamp(LatestStamp(), MakeVersionStamp());
    const CString versionLine = QxFormat(u"版本日期：%s", stamp);

    // The client that sends the main library has it already.
    if (paths.GetSize() == 1 && paths[0].EqualsNoCase(kMainLibraryPath))
        WriteLegacyText(CString(GetInstallPath_CV()) + u"Client_PartLib.xml", versionLine);

    for (int i = 0; i < paths.GetSize(); ++i) {
        const CString operation = i < operations.GetSize() ? operations[i] : CString();
        m_arrEntries.InsertAt(0, STRUCT_FILE_INFO{paths[i], stamp, operation});
    }

    return Save(versionLine);
}

bool COperateVersionFile::Save(const CString& versionLine) {
    CString text = versionLine + u"\n";
    for (int i = 0; i < m_arrEntries.GetSize(); ++i) {
        const STRUCT_FILE_INFO& entry = m_arrEntries[i];
        text += QxFormat(i + 1 < m_arrEntries.GetSize() ? u"%s|%s|%s\n" : u"%s|%s|%s", entry.m_strPath,
                         entry.m_strVersion, entry.m_strOperation);
    }
    if (!WriteLegacyText(m_strFilePath, text)) return false;
    m_strVersionLine = versionLine;
    return true;
}

int COperateVersionFile::RestoreMissingEntries(const COperateVersionFile& older) {
    int restored = 0;
    for (const STRUCT_FILE_INFO& entry : older.m_arrEntries) {
        if (!IsWellFormedEntry(entry) || HasPath(entry.m_strPath)) continue;
        // Newest first: the entry goes before the first well-formed one that is older than it.
        int at = 0;
        while (at < m_arrEntries.GetSize() &&
               !(IsWellFormedEntry(m_arrEntries[at]) && m_arrEntries[at].m_strVersion.CompareNoCase(entry.m_strVersion) < 0))
            ++at;
        m_arrEntries.InsertAt(at, entry);
        ++restored;
    }
    return restored;
}

bool COperateVersionFile::HasPath(const CString& path) const {
    for (const STRUCT_FILE_INFO& entry : m_arrEntries)
        if (entry.m_strPath.EqualsNoCase(path)) return true;
    return false;
}

bool COperateVersionFile::UpdateEntry(const CString& path, const CString& operation) {
    return UpdateEntries(CStringArray{path}, CStringArray{operation});
}

bool COperateVersionFile::UpdateEntries(const CStringArray& paths, const CStringArray& operations) {
    Clear();
    Load();
    RemoveEntries(paths);
    return AddEntries(paths, operations);
}
