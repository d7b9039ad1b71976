// What this client last took from the site or sent to it, file by file: "LocalData\QxLibTaken.txt", one
// "path|size|fingerprint" a line. A local file that no longer matches its line has been changed by the
// person since, and `sync` must not replace it.
#pragma once

#include "support/CString.h"

#include <map>
#include <string>

class TakenFiles {
public:
    explicit TakenFiles(const CString& installFolder);

    // True when the local file is exactly what this client last took or sent under that path.
    bool unchangedSinceTaken(const CString& remotePath, const CString& localFile) const;
    // Notes the local file's present content under the path; `save` writes the list.
    void note(const CString& remotePath, const CString& localFile);
    bool save() const;

    // The fingerprint of a file's bytes: its size and a 64-bit FNV-1a hash; empty when it cannot be read.
    static CString fingerprintOf(const CString& localFile);

private:
    CString m_file;
    std::map<std::u16string, CString> m_fingerprints;  // by the path in upper case
};
