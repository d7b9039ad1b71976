// The files this client has checked out, kept in "LocalData\QxLibCheckOuts.txt" (one remote path a line),
// so that `qxlib status` can say who holds each of them now.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

class CheckOutList {
public:
    explicit CheckOutList(const CString& installFolder);

    const CStringArray& paths() const { return m_paths; }
    bool contains(const CString& remotePath) const;
    // Each rewrites the list at once.
    void add(const CString& remotePath);
    void remove(const CString& remotePath);

private:
    void save() const;

    CString m_file;
    CStringArray m_paths;
};
