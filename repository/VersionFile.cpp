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

bool COperateVersionFile::Load() {
    CStringArray lines;
    if (!ReadFileLines(m_strFilePath, lines, false)) return false;
    for (int i = 0; i < lines.GetSize(); ++i) {
        if (i == 0) {
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
    if (last.CompareNoCase(now) < 0) return now;
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

bool COperateVersionFile::AddEntries(const CStringArray& paths, const CStringArray& operations) {
    CString last;
    ReadFirstLine(m_strFilePath, last);
    const CString stamp = NextVersionStamp(StampOfVersionLine(last), MakeVersionStamp());
    const CString versionLine = QxFormat(u"版本日期：%s", stamp);

    // The client that sends the main library has it already.
    if (paths.GetSize() == 1 && paths[0].EqualsNoCase(kMainLibraryPath))
        WriteLegacyText(CString(GetInstallPath_CV()) + u"Client_PartLib.xml", versionLine);

    for (int i = 0; i < paths.GetSize(); ++i) {
        const CString operation = i < operations.GetSize() ? operations[i] : CString();
        m_arrEntries.InsertAt(0, STRUCT_FILE_INFO{paths[i], stamp, operation});
    }

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

bool COperateVersionFile::UpdateEntry(const CString& path, const CString& operation) {
    return UpdateEntries(CStringArray{path}, CStringArray{operation});
}

bool COperateVersionFile::UpdateEntries(const CStringArray& paths, const CStringArray& operations) {
    Clear();
    Load();
    RemoveEntries(paths);
    return AddEntries(paths, operations);
}
