// Resolving the secondary schematics of a circuit.
#include "drawing/primary/SecondaryDrawingList.h"

#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/PathText.h"
#include "support/TextHelpers.h"

namespace {

std::u16string foldedName(const CString& name) {
    std::u16string folded = name.str();
    for (char16_t& ch : folded) ch = QxFs::FoldNameChar(ch);
    return folded;
}

// A name that a listing answers as FileExists does: no pattern, no folder of its own, no device.
bool listingAnswers(const CString& name) {
    if (name.IsEmpty() || name == u"." || name == u".." || name.Find(u'*') >= 0 || name.Find(u'?') >= 0 ||
        name.Find(u'/') >= 0)
        return false;
    const int dot = name.ReverseFind(u'.');
    const CString stem = dot >= 0 ? name.Left(dot) : name;
    return !stem.EqualsNoCase(u"com1") && !stem.EqualsNoCase(u"com2");
}

} // namespace

SecondaryDrawingFinder::SecondaryDrawingFinder(CString primaryDrawingPath)
    : m_folder(GetParentPath(primaryDrawingPath)) {}

bool SecondaryDrawingFinder::Exists(const CString& path) {
    const int slash = path.ReverseFind(u'\\');
    const CString name = path.Mid(slash + 1);
    if (slash < 0 || !listingAnswers(name)) return FileExists(path);
    return namesIn(path.Left(slash + 1)).contains(foldedName(name));
}

const std::unordered_set<std::u16string>& SecondaryDrawingFinder::namesIn(const CString& folder) {
    const auto known = m_namesByFolder.find(folder);
    if (known != m_namesByFolder.end()) return known->second;
    std::unordered_set<std::u16string> names;
    for (const QxFs::Entry& entry : QxFs::List(folder)) names.insert(foldedName(entry.name));
    return m_namesByFolder.emplace(folder, std::move(names)).first->second;
}

CString SecondaryDrawingFinder::Resolve(const CString& list) {
    CStringArray pieces;
    SplitString(list, u"|", pieces);
    CString resolved;
    for (int i = 0; i < pieces.GetSize(); ++i) {
        CString piece = pieces[i];
        const CString fileName = GetFileNameOfPath(piece);
        if (!fileName.IsEmpty()) {
            const CString beside = JoinPath(m_folder, fileName);
            if (Exists(beside)) piece = beside;
            else if (CString below = findBelowFolder(fileName); !below.IsEmpty()) piece = below;
        }
        if (i > 0) resolved += u"|";
        resolved += piece;
    }
    return resolved;
}

CString SecondaryDrawingFinder::findBelowFolder(const CString& fileName) {
    if (!m_listed) {
        m_listed = true;
        CStringArray drawings;
        FindFilesInFolder(m_folder, u"dwg", drawings, true);
        for (const CString& drawing : drawings) {
            CString key = GetFileNameOfPath(drawing);
            m_firstByName.emplace(key.MakeUpper(), drawing);
        }
    }
    CString key = fileName;
    const auto found = m_firstByName.find(key.MakeUpper());
    return found == m_firstByName.end() ? CString() : found->second;
}
