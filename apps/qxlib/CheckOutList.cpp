// The files this client has checked out.
#include "CheckOutList.h"

#include "support/FileSystem.h"
#include "support/FileUtils.h"

CheckOutList::CheckOutList(const CString& installFolder) : m_file(installFolder + u"LocalData\\QxLibCheckOuts.txt") {
    ReadFileLines(m_file, m_paths, false);
}

bool CheckOutList::contains(const CString& remotePath) const {
    for (const CString& path : m_paths)
        if (path.EqualsNoCase(remotePath)) return true;
    return false;
}

void CheckOutList::add(const CString& remotePath) {
    if (contains(remotePath)) return;
    m_paths.Add(remotePath);
    save();
}

void CheckOutList::remove(const CString& remotePath) {
    for (int i = m_paths.GetUpperBound(); i >= 0; --i)
        if (m_paths[i].EqualsNoCase(remotePath)) m_paths.RemoveAt(i);
    save();
}

void CheckOutList::save() const {
    QxFs::MakeFolders(m_file.Left(m_file.ReverseFind(u'\\')));
    WriteFileLines(m_file, m_paths);
}
