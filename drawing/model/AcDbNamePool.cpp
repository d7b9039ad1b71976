// Shared names.
#include "drawing/model/AcDbNamePool.h"

const CString& AcDbNamePool::intern(std::u16string_view name) {
    const auto found = m_names.find(name);
    if (found != m_names.end()) return *found;
    return *m_names.emplace(name).first;
}

AcDbNamePool& AcDbNamePool::detached() {
    static AcDbNamePool pool;
    return pool;
}
