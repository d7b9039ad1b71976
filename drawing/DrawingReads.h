// Drawings read once per command. A command reads the same drawing many times over (a drawer's drawing for
// its rows, again for its title, once per drawer that names it; the walk once more for its part records).
// While a CDrawingReadScope stands, a drawing read beside the editor is kept by path and every later
// opening of that path gets the same database, so each file is read once; when the scope ends, everything
// it kept goes with it. Documents of the editor are never kept: they are looked up first, as always.
#pragma once

#include "drawing/model/AcDbDatabase.h"
#include "support/CArray.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class QX_API CDrawingReadScope {
public:
    // Becomes the scope in force unless one already stands; an inner scope then leaves everything to it,
    // so a command called by another shares its caller's reads.
    CDrawingReadScope();
    ~CDrawingReadScope();
    CDrawingReadScope(const CDrawingReadScope&) = delete;
    CDrawingReadScope& operator=(const CDrawingReadScope&) = delete;

    // The scope in force, or null.
    static CDrawingReadScope* active();

    // The kept database of the path, read now if it is not kept yet; null when the drawing cannot be read.
    // It stays the scope's: the caller never deletes it. A kept database that was changed since it was read
    // is read afresh, so a change made during the command reaches no later reader; the changed one stays
    // alive until the scope ends, for whoever still holds it.
    AcDbDatabase* database(const CString& path);
    // Takes the kept database of the path out of the scope (null when none is kept), for an owner that
    // keeps it longer than the command: a drawing that the editor opens.
    std::unique_ptr<AcDbDatabase> take(const CString& path);

    // Lets go of the kept databases of these paths, for a reader that is the last to need them; a later
    // opening reads the drawing again.
    void forget(const CStringArray& paths);

private:
    struct Kept {
        std::unique_ptr<AcDbDatabase> database;  // null: the drawing does not read
        std::uint64_t generation = 0;
    };

    bool m_inForce = false;
    std::unordered_map<CString, Kept> m_kept;
    std::vector<std::unique_ptr<AcDbDatabase>> m_changed;
};
