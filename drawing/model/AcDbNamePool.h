// AcDbNamePool: names that many objects of a drawing share (xdata applications, layers, dictionary
// entries), each kept once. A name handed out keeps its address for the life of the pool.
#pragma once

#include "support/CString.h"

#include <string_view>
#include <unordered_set>

class QX_API AcDbNamePool {
public:
    const CString& intern(std::u16string_view name);
    size_t size() const { return m_names.size(); }

    // The pool of objects that belong to no database yet; it lives as long as the process.
    static AcDbNamePool& detached();

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::u16string_view name) const noexcept { return std::hash<std::u16string_view>()(name); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(std::u16string_view a, std::u16string_view b) const noexcept { return a == b; }
    };

    std::unordered_set<CString, Hash, Equal> m_names;
};
