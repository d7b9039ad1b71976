// What this client last took from the site or sent to it.
#include "TakenFiles.h"

#include "support/CArray.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Format.h"

namespace {

std::u16string keyOf(const CString& path) {
    CString upper = path;
    return upper.MakeUpper().str();
}

} // namespace

TakenFiles::TakenFiles(const CString& installFolder) : m_file(installFolder + u"LocalData\\QxLibTaken.txt") {
    CStringArray lines;
    ReadFileLines(m_file, lines, false);
    for (const CString& line : lines) {
        const int bar = line.Find(u'|');
        if (bar > 0) m_fingerprints[keyOf(line.Left(bar))] = line.Mid(bar + 1);
    }
}

CString TakenFiles::fingerprintOf(const CString& localFile) {
    std::string bytes;
    if (QxFs::IsFolder(localFile) || !QxFs::ReadBytes(localFile, bytes)) return {};
    unsigned long long hash = 14695981039346656037ull;
    for (const unsigned char byte : bytes) hash = (hash ^ byte) * 1099511628211ull;
    return QxFormat(u"%llu|%016llx", static_cast<unsigned long long>(bytes.size()), hash);
}

bool TakenFiles::unchangedSinceTaken(const CString& remotePath, const CString& localFile) const {
    const auto found = m_fingerprints.find(keyOf(remotePath));
    return found != m_fingerprints.end() && found->second == fingerprintOf(localFile);
}

void TakenFiles::note(const CString& remotePath, const CString& localFile) {
    const CString fingerprint = fingerprintOf(localFile);
    if (fingerprint.IsEmpty()) m_fingerprints.erase(keyOf(remotePath));
    else m_fingerprints[keyOf(remotePath)] = fingerprint;
}

bool TakenFiles::save() const {
    CStringArray lines;
    for (const auto& [key, fingerprint] : m_fingerprints) lines.Add(CString(key) + u"|" + fingerprint);
    QxFs::MakeFolders(m_file.Left(m_file.ReverseFind(u'\\')));
    return WriteFileLines(m_file, lines);
}
