// The site as one `sync` sees it: each folder is listed once, and a journal path is found by the names the
// site lists, so that a name that differs only in case is fetched as the site spells it.
#pragma once

#include "repository/MyFtpConnection.h"
#include "support/CArray.h"
#include "support/CString.h"

#include <map>
#include <string>

class SiteView {
public:
    enum class Found { Yes, No, ListingFailed };
    struct Listing {
        CStringArray folders;  // site paths, joined to the folder
        CStringArray files;
    };

    explicit SiteView(CMyFtpConnection& connection) : m_connection(connection) {}

    // The listing of a site folder ("" for the root), listed at the first call only (with one reconnect);
    // nullptr when it cannot be listed.
    const Listing* list(const CString& siteFolder);
    // Finds a journal path element by element, the exact name first, else one differing only in case.
    // `sitePath` is the path as the site spells it.
    Found resolve(const CString& journalPath, bool isFolder, CString& sitePath);
    // Whether the listing of the file's folder shows a lock "NAME.bak" beside it.
    bool listsLockOf(const CString& siteFile);
    int listings() const { return m_listings; }

private:
    CMyFtpConnection& m_connection;
    std::map<std::u16string, Listing> m_cache;  // by the folder's site path in upper case
    int m_listings = 0;
};
