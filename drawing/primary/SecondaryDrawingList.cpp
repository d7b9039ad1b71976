// Resolving the secondary schematics of a circuit.
#include "drawing/primary/SecondaryDrawingList.h"

#include "support/FileUtils.h"
#include "support/PathText.h"
#include "support/TextHelpers.h"

SecondaryDrawingFinder::SecondaryDrawingFinder(CString primaryDrawingPath)
    : m_folder(GetParentPath(primaryDrawingPath)) {}

CString SecondaryDrawingFinder::Resolve(const CString& list) {
    CStringArray pieces;
    SplitString(list, u"|", pieces);
    CString resolved;
    for (int i = 0; i < pieces.GetSize(); ++i) {
        CString piece = pieces[i];
        const CString fileName = GetFileNameOfPath(piece);
        if (!fileName.IsEmpty()) {
            const CString beside = JoinPath(m_folder, fileName);
            if (FileExists(beside)) piece = beside;
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
