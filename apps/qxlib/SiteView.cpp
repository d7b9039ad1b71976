// The site as one sync sees it.
#include "SiteView.h"

#include "repository/RemotePath.h"

namespace {

std::u16string keyOf(const CString& path) {
    CString upper = path;
    return upper.MakeUpper().str();
}

// The entry of `names` (site paths) whose last element is `name`: the exact one first, else the first that
// differs only in case.
const CString* findNamed(const CStringArray& names, const CString& name) {
    for (const CString& path : names)
        if (RemoteName(path) == name) return &path;
    for (const CString& path : names)
        if (RemoteName(path).EqualsNoCase(name)) return &path;
    return nullptr;
}

} // namespace

const SiteView::Listing* SiteView::list(const CString& siteFolder) {
    const auto found = m_cache.find(keyOf(siteFolder));
    if (found != m_cache.end()) return &found->second;
    Listing listing;
    ++m_listings;
    if (!m_connection.ListRemoteFolder(siteFolder, listing.folders, listing.files)) return nullptr;
    return &m_cache.emplace(keyOf(siteFolder), std::move(listing)).first->second;
}

SiteView::Found SiteView::resolve(const CString& journalPath, bool isFolder, CString& sitePath) {
    CString rest = journalPath;
    rest.TrimRight(u'\\');
    sitePath.Empty();
    for (;;) {
        const int slash = rest.Find(u'\\');
        const CString name = slash < 0 ? rest : rest.Left(slash);
        const Listing* listing = list(sitePath);
        if (!listing) return Found::ListingFailed;
        const bool last = slash < 0;
        const CString* entry = findNamed(last && !isFolder ? listing->files : listing->folders, name);
        if (!entry) return Found::No;
        sitePath = *entry;
        if (last) return Found::Yes;
        rest = rest.Mid(slash + 1);
    }
}

bool SiteView::listsLockOf(const CString& siteFile) {
    const Listing* listing = list(RemoteParent(siteFile));
    if (!listing) return false;
    for (const CString& path : listing->files)
        if (path.EqualsNoCase(siteFile + u".bak")) return true;
    return false;
}
